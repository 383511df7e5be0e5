#include "platform/linux/XmlPropertyListDocument.h"

#include <algorithm>
#include <iterator>

#include "base/Integer.h"
#include "platform/linux/Base64.h"
#include "platform/linux/PropertyListDates.h"
#include "platform/linux/PropertyListNumbers.h"

namespace wenlolib::platform::gnulinux {

struct XmlPropertyListElement {
  enum class Kind { root, dictionary, array, key, leaf };
  std::string_view name;
  Kind kind;
  /// What an element that holds no others makes of its text; nothing where the text does not fit.
  std::optional<Value> (*convert)(const std::string& text) = nullptr;
};

namespace {

using Element = XmlPropertyListElement;

bool isBlankText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), isBlank);
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<Value> realValue(const std::string& text) {
  return realFromText(trimmed(text));
}
std::optional<Value> dateValue(const std::string& text) {
  return dateFromText(trimmed(text));
}
std::optional<Value> dataValue(const std::string& text) {
  return dataFromBase64(text);
}
std::optional<Value> stringValue(const std::string& text) {
  return text;
}
std::optional<Value> integerValue(const std::string& text) {
  return integerFromText(trimmed(text));
}

template <bool truth>
std::optional<Value> booleanValue(const std::string& text) {
  if (!isBlankText(text)) return std::nullopt;
  return truth;
}

constexpr Element elements[] = {
    {"plist", Element::Kind::root},
    {"dict", Element::Kind::dictionary},
    {"array", Element::Kind::array},
    {"key", Element::Kind::key},
    {"string", Element::Kind::leaf, stringValue},
    {"integer", Element::Kind::leaf, integerValue},
    {"real", Element::Kind::leaf, realValue},
    {"date", Element::Kind::leaf, dateValue},
    {"data", Element::Kind::leaf, dataValue},
    {"true", Element::Kind::leaf, booleanValue<true>},
    {"false", Element::Kind::leaf, booleanValue<false>},
};

const Element* elementNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(elements), std::end(elements),
                                   [&](const Element& element) { return element.name == name; });
  return found == std::end(elements) ? nullptr : found;
}

}  // namespace

bool XmlPropertyListDocument::start(std::string_view name) {
  const Element* element = elementNamed(name);
  if (element == nullptr || leaf_ != nullptr) return false;
  const bool first = !std::exchange(started_, true);
  switch (element->kind) {
    case Element::Kind::root:
      return first;
    case Element::Kind::dictionary:
      return builder_.openDictionary();
    case Element::Kind::array:
      return builder_.openArray();
    default:
      leaf_ = element;
      text_.clear();
      return true;
  }
}

bool XmlPropertyListDocument::end(std::string_view name) {
  const Element* leaf = std::exchange(leaf_, nullptr);
  if (leaf == nullptr) return name == elements[0].name || builder_.close();
  if (leaf->kind == Element::Kind::key) return builder_.key(text_);
  auto value = leaf->convert(text_);
  return value && builder_.add(std::move(*value));
}

bool XmlPropertyListDocument::characters(std::string_view text) {
  if (leaf_ == nullptr) return isBlankText(text);
  text_ += text;
  return true;
}

}  // namespace wenlolib::platform::gnulinux
