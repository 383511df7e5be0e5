#include "xml/WellFormed.h"

#include <algorithm>
#include <new>
#include <utility>

#include "xml/Mending.h"
#include "xml/Parser.h"
#include "xml/PlainXml.h"

// Why the parser need not see every digit
//
// The payload may be tens of millions of hexadecimal digits, and a strict parser takes longer over
// them than the digest does. The run stands right after a ">", so the parser is not inside a name
// or a reference there. Whatever came before it, the parser is in one of a few places: in an
// element's content, an attribute's value, a comment, a CDATA section or an instruction, or it has
// already refused the document. In each of these places a digit neither ends the place nor begins
// anything, and the parser is in the same state after the second digit as after the first: no
// delimiter of these places ("<", "&", quotes, "]]>", "--", "?>") has a digit in it. So what can
// follow depends on whether there was a digit, not on how many there were. Outside the outermost
// element the first digit is refused. It would be enough to show one digit. A few more are shown,
// and a run no longer than that is shown whole.

namespace wenlolib::xml {
namespace {

constexpr std::size_t digitsShown = 64;

Finding::Kind kindOf(XML_Error error) {
  switch (error) {
    case XML_ERROR_ABORTED:
      return Finding::typeDeclared;
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_PARTIAL_CHAR:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
      return Finding::endMissing;
    case XML_ERROR_TAG_MISMATCH:
      return Finding::tagMismatch;
    default:
      return Finding::malformed;
  }
}

/// Even when told UTF-8, the parser takes a text that begins like UTF-16 for UTF-16. These bytes do
/// not occur in UTF-8 or, in the case of NUL, in any document.
std::size_t firstOfOtherEncoding(std::string_view bytes) {
  using namespace std::string_view_literals;
  return bytes.substr(0, 2).find_first_of("\0\xFE\xFF"sv);
}

/// A document type declaration can define entities, which grow without bounds. No layout has one,
/// so the parser stops at it.
void stopAtType(void* parser, const XML_Char*, const XML_Char*, const XML_Char*, int) {
  static_cast<Parser*>(parser)->run([] { return false; });
}

/// Accepts every event: only the form matters.
class AnyContent : public Events {
 public:
  bool start(std::string_view) override { return true; }
  bool end(std::string_view) override { return true; }
  bool characters(std::string_view) override { return true; }
};

/// The two parts of a document that a parser is shown.
struct Shown {
  std::string_view head, tail;
  std::size_t leftOut;  // between them

  Shown(std::string_view document, DigitRun digits)
      : head(document.substr(0, digits.offset + std::min(digits.length, digitsShown))),
        tail(document.substr(digits.offset + digits.length)),
        leftOut(document.size() - head.size() - tail.size()) {}
};

/// Whether the document is well-formed and plain, as nearly every record's is.
bool isPlain(const Shown& shown) {
  if (shown.head.size() > plainBytes || shown.tail.size() > plainBytes) return false;
  std::string shortened(shown.head);
  shortened += shown.tail;
  AnyContent events;
  return readPlain(shortened, events);
}

/// The document with everything outside its digits mended that can be; `digits` moves along.
std::string mend(std::string_view document, DigitRun& digits) {
  const std::size_t end = digits.offset + digits.length;
  Mending mending;
  mending.add(document.substr(0, digits.offset));
  const std::size_t offset = mending.text.size();
  mending.text.append(document.substr(digits.offset, digits.length));
  mending.add(document.substr(end));
  digits.offset = offset;
  return std::move(mending.text);
}

}  // namespace

Finding parse(std::string_view document, DigitRun digits) {
  const std::size_t otherEncoding = firstOfOtherEncoding(document);
  if (otherEncoding != std::string_view::npos) {
    return {Finding::malformed, otherEncoding, XML_ErrorString(XML_ERROR_INVALID_TOKEN)};
  }
  const Shown shown(document, digits);
  Parser parser("UTF-8");
  if (!parser.valid()) throw std::bad_alloc();
  XML_SetUserData(parser.handle(), &parser);
  XML_SetStartDoctypeDeclHandler(parser.handle(), stopAtType);
  if (parser.feed(shown.head, false) && parser.feed(shown.tail, true)) return {};
  const XML_Error error = XML_GetErrorCode(parser.handle());
  const auto offset = static_cast<std::size_t>(XML_GetErrorByteIndex(parser.handle()));
  const bool isInHead = offset < shown.head.size();
  return {kindOf(error), isInHead ? offset : offset + shown.leftOut, XML_ErrorString(error)};
}

bool isWellFormed(std::string_view document, DigitRun digits) {
  return isPlain(Shown(document, digits)) || parse(document, digits).kind == Finding::wellFormed;
}

Text Service::serialised(std::string document, DigitRun digits) {
  // A well-formed document serialises to itself: it has no declaration, no white space of its own,
  // and its empty elements are written open.
  if (isWellFormed(document, digits)) return document;
  std::string text = mend(document, digits);
  if (text == document || !isWellFormed(text, digits)) return std::nullopt;
  return text;
}

}  // namespace wenlolib::xml
