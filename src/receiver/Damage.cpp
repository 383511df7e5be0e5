#include "receiver/Damage.h"

#include <algorithm>
#include <array>

#include "base/EnumTable.h"
#include "receiver/Contents.h"
#include "receiver/Outline.h"
#include "receiver/Preface.h"
#include "xml/WellFormed.h"

namespace wenlolib::receiver {

// --- Documents that fit no layout, or that the parser refuses ---

namespace {

/// Whether a wrapper has this name.
bool isWrapperName(std::string_view name) {
  return std::ranges::any_of(enumerators<Layout>,
                             [&](Layout layout) { return name == wrapperName(layout); });
}

/// Whether the document ends in a wrapper's end tag; white space after it is ignored.
bool endsInWrapper(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find_last_not_of(" \t\r\n") + 1);
  return std::ranges::any_of(enumerators<Layout>, [&](Layout layout) {
    return bytes.ends_with(slotsOf(layout).back().opening);
  });
}

/// Whether the match got far enough to know the layout.
bool wrapperBegun(const Match& match) {
  return match.slot > 0;
}

/// Where a document that the parser refuses first goes wrong. A wrong tag is seen first by the
/// match, a wrong character within a value by the parser.
std::size_t firstWrong(const Match& match, const xml::Finding& finding) {
  if (match.complete) return finding.offset;
  if (!wrapperBegun(match)) {
    const std::size_t first = match.bytes.find_first_not_of(" \t\r\n");
    const bool isTag = first < match.bytes.size() && match.bytes[first] == '<';
    return isTag ? finding.offset : std::min(first, finding.offset);
  }
  if (finding.kind != xml::Finding::malformed) return match.reached;
  return std::min(match.reached, finding.offset);
}

/// A document has not lost its end if its end tags are broken, or if they are there while something
/// before them is still open.
bool hasLostItsEnd(const Match& match, const xml::Finding& finding) {
  if (finding.kind != xml::Finding::endMissing) return false;
  if (match.endIsMissing) return true;
  const bool anythingBegun = match.bytes.find('<') != std::string_view::npos;
  return anythingBegun && !match.payloadFound() && !endsInWrapper(match.bytes);
}

std::string quote(std::string_view text) {
  return std::string("\"").append(text).append("\"");
}

std::string explain(const Match& match) {
  if (match.slot == slotsOf(match.layout).size()) {
    return "Something follows the end of the document.";
  }
  if (!wrapperBegun(match)) {
    return match.bytes.starts_with(byteOrderMark)
               ? "There is a byte order mark before the document."
               : "The document does not begin with the start tag of a layout.";
  }
  return quote(match.expected) + " is expected here.";
}

Verdict truncated(const Match& match) {
  const std::size_t length = match.bytes.size();
  return {Layer::xml, Fault::truncated, length,
          std::string(wrapperBegun(match) ? match.fieldAt(length) : ""),
          length == 0 ? "The file is empty." : "The document ends here; the rest is missing."};
}

/// The verdict on a document that the parser refuses, which may fit its layout all the same.
Verdict refusal(const Match& match, const xml::Finding& finding) {
  if (hasLostItsEnd(match, finding)) return truncated(match);
  const std::size_t offset = firstWrong(match, finding);
  const std::string_view field = wrapperBegun(match) ? match.fieldAt(offset) : "";
  return {
      Layer::xml, Fault::damaged, offset, std::string(field),
      "The document is not well-formed XML: the parser reports " + quote(finding.message) + "."};
}

std::string explain(const Gap& gap) {
  switch (gap.place) {
    case Gap::before:
      return "There is white space before the document.";
    case Gap::after:
      return "There is white space after the end of the document.";
    default:
      return "There is white space between the parts of the document.";
  }
}

}  // namespace

Verdict misfit(const Match& match) {
  const platform::DigitRun digits =
      match.payloadFound() ? platform::DigitRun{match.offsetOf(match.values[match.payloadSlot()]),
                                                leadingDigits(match.values[match.payloadSlot()])}
                           : longestRunAfterTag(match.bytes);
  const xml::Finding finding = xml::parse(match.bytes, digits);
  if (finding.kind == xml::Finding::wellFormed) {
    const Outline outline = outlineOf(match.bytes);
    if (outline.gap && isWrapperName(outline.outermost)) {
      return {Layer::whiteSpace, Fault::damaged, outline.gap->offset, outline.gap->next,
              explain(*outline.gap)};
    }
  }
  if (finding.kind != xml::Finding::wellFormed && finding.kind != xml::Finding::typeDeclared) {
    return refusal(match, finding);
  }
  const std::string_view field = wrapperBegun(match) ? match.fieldAt(match.reached) : "";
  return {Layer::layout, Fault::damaged, match.reached, std::string(field), explain(match)};
}

// --- Documents that fit their layout: the layers from `xml` to `hexadecimal` ---

namespace {

constexpr auto plainCharacters = [] {
  std::array<bool, 256> plain{};
  for (std::size_t character = 0x20; character < 0x7F; ++character) plain[character] = true;
  for (const char markup : {'<', '&', ']'}) plain[static_cast<unsigned char>(markup)] = false;
  return plain;
}();

/// If no character means anything special to a parser, the layout alone makes a document
/// well-formed.
bool needsParser(const Whole& whole) {
  if (whole.validDigits < whole.digits.size()) return true;
  const std::size_t payload = whole.match.payloadSlot();
  return !std::all_of(whole.match.values.begin(), whole.match.values.begin() + payload, isPlain);
}

std::optional<Verdict> xmlVerdict(const Whole& whole) {
  if (!needsParser(whole)) return std::nullopt;
  const xml::Finding finding =
      xml::parse(whole.match.bytes, {whole.offsetOf(whole.digits), whole.validDigits});
  if (finding.kind == xml::Finding::wellFormed) return std::nullopt;
  return refusal(whole.match, finding);
}

std::optional<Verdict> markerVerdict(const Whole& whole) {
  if (whole.marker == "R" || whole.marker == "X") return std::nullopt;
  return Verdict{Layer::cipherMarker, Fault::damaged, whole.offsetOf(whole.marker), "C",
                 "The cipher marker is neither \"R\" nor \"X\"."};
}

std::optional<Verdict> checksumFormVerdict(const Whole& whole) {
  const std::string_view checksum = whole.match.values[checksumSlot];
  const std::size_t valid = std::min(leadingDigits(checksum), checksumLength);
  if (valid == checksumLength && checksum.size() == checksumLength) return std::nullopt;
  return Verdict{Layer::hexadecimal, Fault::damaged, whole.offsetOf(checksum) + valid, "SUM",
                 "The checksum is not 32 digits 0 to 9 and A to F."};
}

std::optional<Verdict> payloadVerdict(const Whole& whole) {
  const std::size_t length = whole.digits.size();
  if (whole.validDigits == length && length % 2 == 0) return std::nullopt;
  return Verdict{Layer::hexadecimal, Fault::damaged,
                 whole.offsetOf(whole.digits) + whole.validDigits,
                 std::string(slotsOf(whole.match.layout)[whole.match.payloadSlot()].name),
                 whole.validDigits < length
                     ? "The payload holds something other than digits 0 to 9 and A to F."
                     : "The payload has an odd number of digits."};
}

}  // namespace

bool isPlain(std::string_view value) {
  return std::ranges::all_of(
      value, [](char character) { return plainCharacters[static_cast<unsigned char>(character)]; });
}

Whole::Whole(const Match& complete) : match(complete) {
  const std::size_t slot = match.payloadSlot();
  digits = match.values[slot];
  marker = match.values[slot - 1];
  date = match.values[dateSlot];
  payload.resize(digits.size() / 2);
  validDigits = decodeDigits(digits, payload.data());
}

std::optional<Verdict> formVerdict(const Whole& whole) {
  for (const auto layer : {xmlVerdict, markerVerdict, checksumFormVerdict, payloadVerdict}) {
    if (std::optional<Verdict> verdict = layer(whole)) return verdict;
  }
  return std::nullopt;
}

}  // namespace wenlolib::receiver
