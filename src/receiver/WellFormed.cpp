#include "receiver/WellFormed.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <new>

#include "platform/linux/ExpatParser.h"

// Why the parser need not see every digit
//
// A strict parser takes longer over a payload than the digest does. The run left out stands right
// behind a ">", so the parser is in no name and in no reference there. Wherever else it can be (an
// element's content, an attribute's value, a comment, a CDATA section, an instruction) a digit is a
// character that neither ends the place nor begins anything, and outside the outermost element the
// first one is refused. What can follow depends on there having been a digit, not on how many.

namespace wenlolib::receiver {
namespace {

using platform::gnulinux::ExpatParser;

constexpr std::size_t digitsShown = 64;

constexpr auto plainCharacters = [] {
  std::array<bool, 256> plain{};
  for (std::size_t character = 0x20; character < 0x7F; ++character) plain[character] = true;
  for (const char markup : {'<', '&', ']'}) plain[static_cast<unsigned char>(markup)] = false;
  return plain;
}();

XmlFinding::Kind kindOf(XML_Error error) {
  switch (error) {
    case XML_ERROR_ABORTED:
      return XmlFinding::typeDeclared;
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_PARTIAL_CHAR:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
      return XmlFinding::endMissing;
    case XML_ERROR_TAG_MISMATCH:
      return XmlFinding::tagMismatch;
    default:
      return XmlFinding::malformed;
  }
}

/// Told UTF-8, the parser still takes a text for UTF-16 that begins like one. UTF-8 has none of
/// these bytes, or no document has.
std::size_t firstOfOtherEncoding(std::string_view bytes) {
  using namespace std::string_view_literals;
  return bytes.substr(0, 2).find_first_of("\0\xFE\xFF"sv);
}

/// A declared type can define entities, which grow without bounds. No layout has one, so the parser
/// stops at it.
void stopAtType(void* parser, const XML_Char*, const XML_Char*, const XML_Char*, int) {
  static_cast<ExpatParser*>(parser)->run([] { return false; });
}

}  // namespace

XmlFinding parse(std::string_view bytes, Run digits) {
  const std::size_t otherEncoding = firstOfOtherEncoding(bytes);
  if (otherEncoding != std::string_view::npos) {
    return {XmlFinding::malformed, otherEncoding, XML_ErrorString(XML_ERROR_INVALID_TOKEN)};
  }
  const std::size_t shownEnd = digits.offset + std::min(digits.length, digitsShown);
  const std::size_t leftOut = digits.offset + digits.length - shownEnd;
  ExpatParser parser("UTF-8");
  if (!parser.valid()) throw std::bad_alloc();
  XML_SetUserData(parser.handle(), &parser);
  XML_SetStartDoctypeDeclHandler(parser.handle(), stopAtType);
  if (parser.feed(bytes.substr(0, shownEnd), false) &&
      parser.feed(bytes.substr(shownEnd + leftOut), true)) {
    return {};
  }
  const XML_Error error = XML_GetErrorCode(parser.handle());
  const auto offset = static_cast<std::size_t>(XML_GetErrorByteIndex(parser.handle()));
  return {kindOf(error), offset < shownEnd ? offset : offset + leftOut, XML_ErrorString(error)};
}

bool isPlain(std::string_view value) {
  return std::ranges::all_of(
      value, [](char character) { return plainCharacters[static_cast<unsigned char>(character)]; });
}

}  // namespace wenlolib::receiver
