// The examination of a document, layer by layer.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "base/Utf8.h"
#include "receiver/Contents.h"
#include "receiver/Damage.h"
#include "receiver/Foreign.h"
#include "receiver/Match.h"
#include "receiver/References.h"
#include "receiver/Repair.h"
#include "receiver/Search.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {
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
  const std::string computed = checksumOf(match.content());
  if (computed == checksum) return {};
  const std::size_t offset = match.offsetOf(checksum);
  if (holdsUnrepaired(match)) {
    return {Layer::checksum, Fault::repaired, offset, "SUM",
            "Stray markup was escaped before the document was stored; the checksum is that of the "
            "document before the repair."};
  }
  return {Layer::checksum, Fault::altered, offset, "SUM",
          "The checksum is " + std::string(checksum) + ", but that of the content is " + computed +
              "."};
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
  if (!match.complete) {
    if (std::optional<Verdict> foreign = foreignVerdict(bytes))
      return {std::move(*foreign), {}, {}};
    return {misfit(match), {}, search(bytes)};
  }
  Whole whole(match);
  if (std::optional<Verdict> verdict = formVerdict(whole)) {
    return {std::move(*verdict), {}, search(bytes)};
  }
  Report report{checksumVerdict(match), documentOf(whole), {}};
  if (!report.verdict.sound()) return report;
  bool deciphered = false;
  report.verdict = contentsVerdict(whole, deciphered);
  if (deciphered) report.document->contents = std::move(whole.payload);
  return report;
}

}  // namespace wenlolib::receiver
