// The examination of a document, layer by layer.
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "receiver/Contents.h"
#include "receiver/Damage.h"
#include "receiver/Match.h"
#include "receiver/Repair.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {

// --- References in values ---

namespace {

struct Named {
  std::string_view name;
  char character;
};
constexpr std::array<Named, 5> namedCharacters = {
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

/// `name` stands between "&" and ";".
void appendReference(std::string& text, std::string_view name) {
  const auto* named = std::ranges::find(namedCharacters, name, &Named::name);
  if (named != namedCharacters.end()) {
    text.push_back(named->character);
    return;
  }
  const bool isHexadecimal = name.starts_with("#x");
  name.remove_prefix(std::min<std::size_t>(name.size(), isHexadecimal ? 2 : 1));
  if (const auto character = takeNumber(name, isHexadecimal ? 16 : 10)) {
    appendUtf8(text, static_cast<char32_t>(*character));
  }
}

/// A well-formed value as a parser returns it, with its references resolved, except that line ends
/// stay as they are.
std::string withoutReferences(std::string_view value) {
  std::string text;
  for (;;) {
    const std::size_t plain = std::min(value.find('&'), value.size());
    text.append(value.substr(0, plain));
    value.remove_prefix(plain);
    const std::size_t end = value.find(';');
    if (end == std::string_view::npos) return text.append(value);
    if (!value.empty()) appendReference(text, value.substr(1, end - 1));
    value.remove_prefix(end + 1);
  }
}

}  // namespace

// --- The layers ---

namespace {

Document documentOf(const Whole& whole) {
  const Match& match = whole.match;
  Document document;
  document.layout = match.layout;
  document.checksum = match.values[checksumSlot];
  document.marker = whole.marker.front();
  document.digits = whole.digits;
  document.digitsOffset = match.offsetOf(whole.digits);
  const std::span<const Slot> slots = slotsOf(match.layout);
  document.fields.reserve(slots.size());
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].part != Part::element) continue;
    const std::string_view value = match.values[i];
    document.fields.push_back({std::string(slots[i].name),
                               i == dateSlot ? std::string(value) : withoutReferences(value),
                               match.offsetOf(value)});
  }
  return document;
}

Verdict checksumVerdict(const Match& match) {
  const std::string_view checksum = match.values[checksumSlot];
  if (checksumOf(match.content()) == checksum) return {};
  const bool repaired = holdsUnrepaired(match);
  return {
      Layer::checksum, repaired ? Fault::repaired : Fault::altered, match.offsetOf(checksum), "SUM",
      repaired ? "Stray markup was escaped before the document was stored; the checksum is that "
                 "of the document before the repair."
               : "The checksum is not that of the document's content."};
}

/// Leaves the contents in `payload` if they can be deciphered.
Verdict contentsVerdict(Whole& whole, bool& deciphered) {
  const std::size_t date = whole.offsetOf(whole.date);
  if (whole.date.empty()) {
    return {Layer::contents, Fault::none, date, "Date",
            "The document was written without a date, and so without its contents."};
  }
  deciphered = decipher(whole.marker.front(), whole.date, whole.payload);
  if (!deciphered) {
    return {Layer::contents, Fault::none, whole.offsetOf(whole.marker), "C",
            "The cipher that the document names is not available here."};
  }
  const std::size_t valid = utf8Length(whole.payload);
  if (valid == whole.payload.size()) return {};
  return {Layer::contents, Fault::damaged, whole.offsetOf(whole.digits) + 2 * valid,
          std::string(slotsOf(whole.match.layout)[whole.match.payloadSlot()].name),
          "The decrypted contents are not text in UTF-8."};
}

}  // namespace

std::string_view wrapperName(Layout layout) {
  return slotsOf(layout).front().name;
}

std::string_view Document::value(std::string_view name) const {
  const auto field = std::ranges::find(fields, name, &Field::name);
  return field == fields.end() ? std::string_view() : std::string_view(field->value);
}

Report examine(std::string_view bytes) {
  const Match match = matchOf(bytes);
  if (!match.complete) return {misfit(match), std::nullopt};
  Whole whole(match);
  if (std::optional<Verdict> verdict = formVerdict(whole)) {
    return {std::move(*verdict), std::nullopt};
  }
  Report report{checksumVerdict(match), documentOf(whole)};
  if (!report.verdict.sound()) return report;
  bool deciphered = false;
  report.verdict = contentsVerdict(whole, deciphered);
  if (deciphered) report.document->contents = std::move(whole.payload);
  return report;
}

}  // namespace wenlolib::receiver
