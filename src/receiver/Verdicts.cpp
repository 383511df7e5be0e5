#include "receiver/Verdicts.h"

#include <algorithm>
#include <string>

#include "base/Integer.h"
#include "receiver/Digits.h"
#include "receiver/Outline.h"

namespace wenlolib::receiver {
namespace {

/// The walk knew which layout it was in.
bool wrapperBegun(const Walk& walk) {
  return walk.slot > 0;
}

/// Where a document that the parser refuses first goes wrong. Over a tag the walk is the one that
/// sees it first, over a character within a value the parser.
std::size_t firstWrong(const Walk& walk, const xml::Finding& finding) {
  if (walk.complete) return finding.offset;
  if (!wrapperBegun(walk)) {
    const std::size_t first = walk.bytes.find_first_not_of(" \t\r\n");
    const bool isTag = first < walk.bytes.size() && walk.bytes[first] == '<';
    return isTag ? finding.offset : std::min(first, finding.offset);
  }
  if (finding.kind != xml::Finding::malformed) return walk.reached;
  return std::min(walk.reached, finding.offset);
}

/// A document whose end tags are broken, or stand there with something open before them, has not
/// lost its end.
bool hasLostItsEnd(const Walk& walk, const xml::Finding& finding) {
  if (finding.kind != xml::Finding::endMissing) return false;
  if (walk.endIsMissing) return true;
  const bool anythingBegun = walk.bytes.find('<') != std::string_view::npos;
  return anythingBegun && !walk.payloadFound() && !endsInWrapper(walk.bytes);
}

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

std::string explained(const Walk& walk) {
  if (walk.slot == slotsOf(walk.layout).size()) {
    return "Something stands behind the end of the document.";
  }
  if (!wrapperBegun(walk)) return "The document does not begin with the start tag of a layout.";
  return quoted(walk.expected) + " should stand here.";
}

Verdict truncated(const Walk& walk) {
  const std::size_t length = walk.bytes.size();
  const std::string field(wrapperBegun(walk) ? walk.fieldAt(length) : "");
  std::string explanation = "The document is empty.";
  if (length > 0) {
    explanation = "The document ends after " + decimal(static_cast<std::int64_t>(length)) +
                  (length == 1 ? " byte" : " bytes") + (field.empty() ? "" : ", in " + field) +
                  "; the rest is missing.";
  }
  return {Layer::xml, Fault::truncated, length, field, std::move(explanation)};
}

}  // namespace

Verdict refused(const Walk& walk, const xml::Finding& finding) {
  if (hasLostItsEnd(walk, finding)) return truncated(walk);
  const std::size_t offset = firstWrong(walk, finding);
  const std::string_view field = wrapperBegun(walk) ? walk.fieldAt(offset) : "";
  std::string explanation = "The document is not well-formed XML: the parser reports " +
                            quoted(finding.message) + " at byte " +
                            decimal(static_cast<std::int64_t>(finding.offset)) + ".";
  return {Layer::xml, Fault::damaged, offset, std::string(field), std::move(explanation)};
}

Verdict misfit(const Walk& walk) {
  const platform::DigitRun digits =
      walk.payloadFound() ? platform::DigitRun{walk.offsetOf(walk.values[walk.payloadSlot()]),
                                               leadingDigits(walk.values[walk.payloadSlot()])}
                          : longestRunBehindTag(walk.bytes);
  const xml::Finding finding = xml::parse(walk.bytes, digits);
  if (finding.kind == xml::Finding::wellFormed) {
    const Outline outline = outlineOf(walk.bytes);
    if (outline.gap && isWrapperName(outline.outermost)) {
      return {Layer::whiteSpace, Fault::damaged, outline.gap->offset, outline.gap->before,
              "White space stands between the parts of the document."};
    }
  }
  if (finding.kind != xml::Finding::wellFormed && finding.kind != xml::Finding::typeDeclared) {
    return refused(walk, finding);
  }
  const std::string_view field = wrapperBegun(walk) ? walk.fieldAt(walk.reached) : "";
  return {Layer::layout, Fault::damaged, walk.reached, std::string(field), explained(walk)};
}

}  // namespace wenlolib::receiver
