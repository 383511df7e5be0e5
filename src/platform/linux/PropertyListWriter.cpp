#include "platform/linux/PropertyListWriter.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/Base64.h"
#include "platform/linux/PropertyListBounds.h"
#include "platform/linux/PropertyListDates.h"
#include "platform/linux/PropertyListNumbers.h"
#include "platform/linux/PropertyListPrologue.h"
#include "platform/linux/XmlText.h"

namespace wenlolib::platform::gnulinux {
namespace {

constexpr std::string_view opening = "<plist version=\"1.0\">\n";
constexpr std::string_view closing = "</plist>\n";

constexpr std::size_t dataColumns = 76;
constexpr std::size_t tabColumns = 8;

/// Deeper data is not indented further, or its lines would be more indentation than data.
constexpr std::size_t deepestDataIndent = 8;

template <class Integer>
std::string integerText(Integer number) {
  char buffer[std::numeric_limits<Integer>::digits10 + 3];
  const auto result = std::to_chars(std::begin(buffer), std::end(buffer), number);
  return std::string(std::begin(buffer), result.ptr);
}

/// Writes one document. Each step answers false once the dictionary cannot be carried.
class Writer {
 public:
  [[nodiscard]] bool document(const Dictionary& dictionary);
  [[nodiscard]] std::string take() && { return std::move(out_); }

  [[nodiscard]] bool operator()(bool value) { return line(value ? "<true/>" : "<false/>"); }
  [[nodiscard]] bool operator()(std::int64_t value) { return integer(integerText(value)); }
  [[nodiscard]] bool operator()(std::uint64_t value) { return integer(integerText(value)); }
  [[nodiscard]] bool operator()(double value) { return element("real", realText(value)); }
  [[nodiscard]] bool operator()(const std::string& value) { return element("string", value); }
  [[nodiscard]] bool operator()(Instant value);
  [[nodiscard]] bool operator()(const Value::Data& value);
  [[nodiscard]] bool operator()(const Value::Array& value);
  [[nodiscard]] bool operator()(const Dictionary& value);

 private:
  [[nodiscard]] bool put(std::string_view text);
  [[nodiscard]] bool indent(std::size_t tabs);
  [[nodiscard]] bool line(std::string_view text);
  [[nodiscard]] bool element(std::string_view name, std::string_view text);
  [[nodiscard]] bool integer(std::string_view digits) { return element("integer", digits); }
  [[nodiscard]] bool entries(const Dictionary& entries);

  std::string out_;
  std::size_t level_ = 0;
};

bool Writer::document(const Dictionary& root) {
  return put(propertyListPrologue) && put(opening) && (*this)(root) && put(closing);
}

bool Writer::put(std::string_view text) {
  if (text.size() > propertyListBounds.bytes - out_.size()) return false;
  out_ += text;
  return true;
}

bool Writer::indent(std::size_t tabs) {
  if (tabs > propertyListBounds.bytes - out_.size()) return false;
  out_.append(tabs, '\t');
  return true;
}

bool Writer::line(std::string_view text) {
  return indent(level_) && put(text) && put("\n");
}

bool Writer::element(std::string_view name, std::string_view text) {
  if (!isXmlText(text)) return false;
  const auto part = [this](std::string_view piece) { return put(piece); };
  return indent(level_) && put("<") && put(name) && put(">") && eachEscapedPart(text, part) &&
         put("</") && put(name) && put(">\n");
}

bool Writer::operator()(Instant value) {
  const Text text = dateText(value);
  return text && element("date", *text);
}

/// Base64 lines as wide as the indentation leaves room for, whole groups of three bytes each.
bool Writer::operator()(const Value::Data& value) {
  const std::size_t tabs = std::min(level_, deepestDataIndent);
  const std::size_t lineBytes = std::max(dataColumns - tabColumns * tabs, std::size_t{16}) / 4 * 3;
  if (!line("<data>")) return false;
  std::span<const std::uint8_t> rest(value);
  std::string characters;
  while (!rest.empty()) {
    const auto bytes = rest.first(std::min(lineBytes, rest.size()));
    rest = rest.subspan(bytes.size());
    characters.clear();
    appendBase64(characters, bytes);
    if (!indent(tabs) || !put(characters) || !put("\n")) return false;
  }
  return line("</data>");
}

bool Writer::operator()(const Value::Array& items) {
  if (level_ == propertyListBounds.levels) return false;
  if (items.empty()) return line("<array/>");
  if (!line("<array>")) return false;
  ++level_;
  for (const Value& item : items) {
    if (!item.visit(*this)) return false;
  }
  --level_;
  return line("</array>");
}

bool Writer::operator()(const Dictionary& held) {
  if (level_ == propertyListBounds.levels) return false;
  if (held.empty()) return line("<dict/>");
  return line("<dict>") && entries(held) && line("</dict>");
}

bool Writer::entries(const Dictionary& entries) {
  ++level_;
  for (const auto& [key, value] : entries) {
    if (!element("key", key) || !value.visit(*this)) return false;
  }
  --level_;
  return true;
}

}  // namespace

Text propertyListXml(const Dictionary& dictionary) {
  Writer writer;
  if (!writer.document(dictionary)) return std::nullopt;
  return std::move(writer).take();
}

}  // namespace wenlolib::platform::gnulinux
