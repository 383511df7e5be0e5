// Writing, in XML form only.
#include "plist/PropertyList.h"

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
#include <variant>
#include <vector>

#include "plist/Scalars.h"
#include "xml/Escape.h"

namespace wenlolib::plist {
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

/// Writes one document. Each step returns false once the dictionary turns out not to be
/// representable. The open arrays and dictionaries are kept on a stack of their own, so that deep
/// nesting of values does not become deep recursion.
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

  /// What is still to be written of an open array or dictionary.
  struct Items {
    Value::Array::const_iterator next, end;
  };
  struct Entries {
    Dictionary::const_iterator next, end;
  };
  [[nodiscard]] bool open(std::string_view tag, std::variant<Items, Entries> held);
  [[nodiscard]] bool step(Items& items);
  [[nodiscard]] bool step(Entries& entries);
  [[nodiscard]] bool close(std::string_view tag);

  std::string out_;
  std::vector<std::variant<Items, Entries>> open_;
};

bool Writer::document(const Dictionary& root) {
  if (!put(prologue) || !put(opening) || !(*this)(root)) return false;
  const auto next = [this](auto& innermost) { return step(innermost); };
  while (!open_.empty()) {
    if (!std::visit(next, open_.back())) return false;
  }
  return put(closing);
}

bool Writer::put(std::string_view text) {
  if (text.size() > bounds.bytes - out_.size()) return false;
  out_ += text;
  return true;
}

bool Writer::indent(std::size_t tabs) {
  if (tabs > bounds.bytes - out_.size()) return false;
  out_.append(tabs, '\t');
  return true;
}

bool Writer::line(std::string_view text) {
  return indent(open_.size()) && put(text) && put("\n");
}

bool Writer::element(std::string_view name, std::string_view text) {
  if (!xml::isXmlText(text)) return false;
  const auto part = [this](std::string_view piece) { return put(piece); };
  return indent(open_.size()) && put("<") && put(name) && put(">") &&
         xml::eachEscapedPart(text, part) && put("</") && put(name) && put(">\n");
}

bool Writer::operator()(Instant value) {
  const Text text = dateText(value);
  return text && element("date", *text);
}

/// Base64 lines as wide as the indentation leaves room for, whole groups of three bytes each.
bool Writer::operator()(const Value::Data& value) {
  const std::size_t tabs = std::min(open_.size(), deepestDataIndent);
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
  if (open_.size() == bounds.levels) return false;
  if (items.empty()) return line("<array/>");
  return open("<array>", Items{items.begin(), items.end()});
}

bool Writer::operator()(const Dictionary& entries) {
  if (open_.size() == bounds.levels) return false;
  if (entries.empty()) return line("<dict/>");
  return open("<dict>", Entries{entries.begin(), entries.end()});
}

bool Writer::open(std::string_view tag, std::variant<Items, Entries> held) {
  if (!line(tag)) return false;
  open_.push_back(held);
  return true;
}

// A value that opens another level may move `items` or `entries`, so they are not used after it.
bool Writer::step(Items& items) {
  if (items.next == items.end) return close("</array>");
  const Value& item = *items.next++;
  return item.visit(*this);
}

bool Writer::step(Entries& entries) {
  if (entries.next == entries.end) return close("</dict>");
  const auto& [key, value] = *entries.next++;
  return element("key", key) && value.visit(*this);
}

bool Writer::close(std::string_view tag) {
  open_.pop_back();
  return line(tag);
}

}  // namespace

Text write(const Dictionary& dictionary) {
  Writer writer;
  if (!writer.document(dictionary)) return std::nullopt;
  return std::move(writer).take();
}

}  // namespace wenlolib::plist
