// The XML form.
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <new>
#include <utility>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "plist/Builder.h"
#include "plist/Scalars.h"
#include "xml/Parser.h"
#include "xml/PlainXml.h"

namespace wenlolib::plist {
namespace {

// --- Elements ---

struct Element {
  enum class Kind { root, dictionary, array, key, leaf };
  std::string_view name;
  Kind kind;
  /// Converts the text of an element that holds no others; nothing if it cannot be represented.
  std::optional<Value> (*convert)(const std::string& text) = nullptr;
};

bool isBlankText(std::string_view text) {
  return std::all_of(text.begin(), text.end(), isBlank);
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::optional<Value> realValue(const std::string& text) {
  return realFromText(trim(text));
}
std::optional<Value> dateValue(const std::string& text) {
  return dateFromText(trim(text));
}
std::optional<Value> dataValue(const std::string& text) {
  return dataFromBase64(text);
}
std::optional<Value> stringValue(const std::string& text) {
  return text;
}
std::optional<Value> integerValue(const std::string& text) {
  return integerFromText(trim(text));
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

// --- Halves of surrogate pairs ---

/// Stands in for half of a pair, which no XML can hold: a reference to a character that Unicode
/// reserves for a program's own use. It means the same in every encoding.
constexpr std::string_view halfMark = "&#xFDD0;";

/// Whether the text of an element holds the mark, as it stands in a CDATA section or as the
/// character.
bool holdsHalf(const std::string& text) {
  return text.find(halfMark) != std::string::npos || text.find("\xEF\xB7\x90") != std::string::npos;
}

constexpr bool isHalf(std::uint64_t character) {
  return character >= 0xD800 && character <= 0xDFFF;
}

/// The length in bytes of the half of a pair that `text` begins with, either encoded like other
/// characters or as a reference; 0 if it begins with anything else.
std::size_t halfLength(std::string_view text) {
  constexpr std::size_t encoded = 3;
  if (text.size() < encoded) return 0;
  if (text[0] == '\xED' && (text[1] & 0xE0) == 0xA0 && (text[2] & 0xC0) == 0x80) return encoded;
  if (!text.starts_with("&#")) return 0;
  std::string_view rest = text.substr(2);
  const bool isHexadecimal = rest.front() == 'x';
  if (isHexadecimal) rest.remove_prefix(1);
  const auto character = takeNumber(rest, isHexadecimal ? 16 : 10);
  if (!character || !isHalf(*character) || !rest.starts_with(';')) return 0;
  return text.size() - rest.size() + 1;
}

/// `bytes` with the mark in place of each half.
std::string withHalvesMarked(std::string_view bytes) {
  std::string marked;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t length = halfLength(bytes.substr(at));
    marked += length == 0 ? bytes.substr(at, 1) : halfMark;
    at += std::max<std::size_t>(length, 1);
  }
  return marked;
}

/// The unit of UTF-16 at an offset.
std::uint16_t unitAt(std::string_view bytes, std::size_t at, bool isBigEndian) {
  const auto first = static_cast<unsigned char>(bytes[at]);
  const auto second = static_cast<unsigned char>(bytes[at + 1]);
  return static_cast<std::uint16_t>(isBigEndian ? first << 8 | second : second << 8 | first);
}

/// Whether the bytes begin with a byte order mark, or else with a tag, in UTF-16 of this order.
bool beginsInUtf16(std::string_view bytes, bool isBigEndian) {
  const std::uint16_t first = unitAt(bytes, 0, isBigEndian);
  return first == 0xFEFF || first == '<';
}

/// A UTF-16 document in UTF-8, with the mark in place of each half: in UTF-16, expat takes half of
/// a pair for a whole one and swallows what follows it. Nothing for a document in any other
/// encoding.
std::optional<std::string> fromUtf16(std::string_view bytes) {
  if (bytes.size() < 2 || bytes.size() % 2 != 0) return std::nullopt;
  const bool isBig = beginsInUtf16(bytes, true);
  if (!isBig && !beginsInUtf16(bytes, false)) return std::nullopt;
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const bool isLast = at + 2 == bytes.size();
    const std::uint16_t units[] = {unitAt(bytes, at, isBig),
                                   isLast ? std::uint16_t{0} : unitAt(bytes, at + 2, isBig)};
    if (!isHalf(units[0])) {
      appendUtf8(text, units[0]);
    } else if (const Text pair = utf8From(units)) {
      text += *pair;
      at += 2;
    } else {
      text += halfMark;
    }
  }
  return text;
}

// --- The document, from tag to tag ---

/// Each step returns false if the document turns out not to be a property list, or exceeds the
/// bounds.
class Document : public xml::Events {
 public:
  /// `bytes` is the size of the file, in which halves of surrogate pairs may be marked.
  Document(std::size_t bytes, bool hasMarks) : builder_(bytes), hasMarks_(hasMarks) {}

  [[nodiscard]] bool start(std::string_view name) override;
  [[nodiscard]] bool end(std::string_view name) override;
  [[nodiscard]] bool characters(std::string_view text) override;

  /// Gives the document up: `what` says why and must stay valid. Returns false.
  bool refuse(std::string_view what);

  [[nodiscard]] std::string_view refusal() const { return refusal_; }
  [[nodiscard]] platform::ListReading finish(platform::ListFault fault) && {
    return std::move(builder_).finish(fault);
  }

 private:
  Builder builder_;
  bool hasMarks_;
  bool isBegun_ = false;
  const Element* leaf_ = nullptr;  // the open element that holds text, if any
  std::string text_;               // what it holds so far
  std::string_view refusal_;
};

bool Document::refuse(std::string_view what) {
  refusal_ = what;
  return false;
}

bool Document::start(std::string_view name) {
  const Element* element = elementNamed(name);
  if (element == nullptr) return refuse("property lists have no such element");
  if (leaf_ != nullptr) return refuse("an element is inside a value");
  const bool isFirst = !std::exchange(isBegun_, true);
  switch (element->kind) {
    case Element::Kind::root:
      return isFirst || refuse("a property list is inside another");
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

bool Document::end(std::string_view name) {
  const Element* leaf = std::exchange(leaf_, nullptr);
  if (leaf == nullptr) return name == elements[0].name || builder_.close();
  const bool isCarried = !hasMarks_ || !holdsHalf(text_);
  if (leaf->kind != Element::Kind::key) {
    return builder_.add(isCarried ? leaf->convert(text_) : std::nullopt);
  }
  return builder_.key(isCarried ? std::optional(text_) : std::nullopt);
}

bool Document::characters(std::string_view text) {
  if (leaf_ == nullptr) return isBlankText(text) || refuse("there is text between the values");
  text_ += text;
  return true;
}

// --- By the parser ---

/// Passes expat's events to the document. It calls nothing that expat 2.0 did not have: old systems
/// come with that version.
class Parse {
 public:
  /// `encoding` overrides the one that the document names; null detects it.
  Parse(std::string_view bytes, bool hasMarks, const char* encoding = nullptr)
      : bytes_(bytes), parser_(encoding), document_(bytes.size(), hasMarks) {}

  [[nodiscard]] platform::ListReading read();

 private:
  static Parse& from(void* self) { return *static_cast<Parse*>(self); }
  static void refuseDeclaration(void* self);
  void handleDeclarations();

  std::string_view bytes_;
  xml::Parser parser_;
  Document document_;
};

/// Declarations inside the document can multiply its size (entities) or the time it takes (defaults
/// of attributes), and no property list needs any. An empty list of them does no harm.
void Parse::refuseDeclaration(void* self) {
  from(self).parser_.run(
      [&] { return from(self).document_.refuse("it declares entities or elements of its own"); });
}

void Parse::handleDeclarations() {
  XML_ParserStruct* const parser = parser_.handle();
  XML_SetEntityDeclHandler(parser, [](void* self, auto...) { refuseDeclaration(self); });
  XML_SetAttlistDeclHandler(parser, [](void* self, auto...) { refuseDeclaration(self); });
  XML_SetNotationDeclHandler(parser, [](void* self, auto...) { refuseDeclaration(self); });
  XML_SetElementDeclHandler(parser, [](void* self, const XML_Char*, XML_Content* model) {
    XML_FreeContentModel(from(self).parser_.handle(), model);
    refuseDeclaration(self);
  });
  // With an external DTD an unknown entity is not an error of form, but its text would be missing.
  XML_SetSkippedEntityHandler(parser, [](void* self, auto...) {
    from(self).parser_.run([&] { return from(self).document_.refuse("undefined entity"); });
  });
}

platform::ListReading Parse::read() {
  if (!parser_.valid()) throw std::bad_alloc();
  XML_ParserStruct* const parser = parser_.handle();
  XML_SetUserData(parser, this);
  XML_SetElementHandler(
      parser,
      [](void* self, const XML_Char* name, const XML_Char**) {
        from(self).parser_.run([&] { return from(self).document_.start(name); });
      },
      [](void* self, const XML_Char* name) {
        from(self).parser_.run([&] { return from(self).document_.end(name); });
      });
  XML_SetCharacterDataHandler(parser, [](void* self, const XML_Char* text, int length) {
    const std::string_view characters(text, static_cast<std::size_t>(length));
    from(self).parser_.run([&] { return from(self).document_.characters(characters); });
  });
  handleDeclarations();
  if (parser_.feed(bytes_, true)) return std::move(document_).finish({});
  const std::string_view refusal = document_.refusal();
  return std::move(document_).finish(
      {refusal.empty() ? XML_ErrorString(XML_GetErrorCode(parser)) : refusal,
       static_cast<std::size_t>(XML_GetCurrentLineNumber(parser)),
       static_cast<std::size_t>(XML_GetCurrentByteIndex(parser))});
}

// --- Plain ---

/// The files that a record reads are small and nearly always plain, and expat takes longer to set
/// itself up than to read them.
std::optional<platform::ListReading> readPlainly(std::string_view bytes) {
  if (!bytes.starts_with(prologue)) return std::nullopt;
  Document document(bytes.size(), false);
  bytes.remove_prefix(prologue.size());
  if (!xml::readPlain(bytes, document)) return std::nullopt;
  return std::move(document).finish({});
}

}  // namespace

platform::ListReading readXml(std::string_view bytes, bool plainFirst) {
  if (auto plain = plainFirst ? readPlainly(bytes) : std::nullopt) return *std::move(plain);
  if (const auto text = fromUtf16(bytes)) return Parse(*text, true, "UTF-8").read();
  platform::ListReading reading = Parse(bytes, false).read();
  if (reading.state != platform::ListState::damaged) return reading;
  const std::string marked = withHalvesMarked(bytes);
  return marked == bytes ? reading : Parse(marked, true).read();
}

}  // namespace wenlolib::plist
