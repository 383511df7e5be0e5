// The examination of a document, layer by layer.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "receiver/Contents.h"
#include "receiver/Form.h"
#include "receiver/References.h"
#include "receiver/Repair.h"
#include "receiver/Verdicts.h"
#include "receiver/Walk.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {
namespace {

Document documentOf(const Whole& whole) {
  const Walk& walk = whole.walk;
  Document document;
  document.layout = walk.layout;
  document.checksum = walk.values[checksumSlot];
  document.marker = whole.marker.front();
  document.digits = whole.digits;
  document.digitsOffset = walk.offsetOf(whole.digits);
  const std::span<const Slot> slots = slotsOf(walk.layout);
  document.fields.reserve(slots.size());
  for (std::size_t i = 0; i < slots.size(); ++i) {
    if (slots[i].part != Part::element) continue;
    const std::string_view value = walk.values[i];
    document.fields.push_back({std::string(slots[i].name),
                               i == dateSlot ? std::string(value) : resolved(value),
                               walk.offsetOf(value)});
  }
  return document;
}

Verdict checksumVerdict(const Walk& walk) {
  const std::string_view checksum = walk.values[checksumSlot];
  if (checksumOf(walk.content()) == checksum) return {};
  const bool repaired = holdsUnrepaired(walk);
  return {
      Layer::checksum, repaired ? Fault::repaired : Fault::altered, walk.offsetOf(checksum), "SUM",
      repaired ? "Stray markup was escaped before the document was stored; the checksum is that "
                 "of the document before."
               : "The checksum is not that of the document's content."};
}

/// Leaves the contents in `payload` where they can be deciphered.
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
  const std::size_t valid = validUtf8(whole.payload);
  if (valid == whole.payload.size()) return {};
  return {Layer::contents, Fault::damaged, whole.offsetOf(whole.digits) + 2 * valid,
          std::string(slotsOf(whole.walk.layout)[whole.walk.payloadSlot()].name),
          "The decrypted contents are not text in UTF-8."};
}

}  // namespace

std::string_view Document::value(std::string_view name) const {
  const auto field = std::ranges::find(fields, name, &Field::name);
  return field == fields.end() ? std::string_view() : std::string_view(field->value);
}

Report examine(std::string_view bytes) {
  const Walk walk = walkThrough(bytes);
  if (!walk.complete) return {misfit(walk), std::nullopt};
  Whole whole(walk);
  if (std::optional<Verdict> verdict = formVerdict(whole)) {
    return {std::move(*verdict), std::nullopt};
  }
  Report report{checksumVerdict(walk), documentOf(whole)};
  if (!report.verdict.sound()) return report;
  bool deciphered = false;
  report.verdict = contentsVerdict(whole, deciphered);
  if (deciphered) report.document->contents = std::move(whole.payload);
  return report;
}

}  // namespace wenlolib::receiver
