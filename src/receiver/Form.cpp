// The layers from `xml` to `hexadecimal`, of a document that the walk went through.
#include "receiver/Form.h"

#include <algorithm>
#include <array>

#include "receiver/Digits.h"
#include "receiver/Verdicts.h"
#include "xml/WellFormed.h"

namespace wenlolib::receiver {
namespace {

constexpr auto plainCharacters = [] {
  std::array<bool, 256> plain{};
  for (std::size_t character = 0x20; character < 0x7F; ++character) plain[character] = true;
  for (const char markup : {'<', '&', ']'}) plain[static_cast<unsigned char>(markup)] = false;
  return plain;
}();

/// Without characters that mean something to a parser the layout alone makes a document well
/// formed.
bool needsParser(const Whole& whole) {
  if (whole.validDigits < whole.digits.size()) return true;
  const std::size_t payload = whole.walk.payloadSlot();
  return !std::all_of(whole.walk.values.begin(), whole.walk.values.begin() + payload, isPlain);
}

std::optional<Verdict> xmlVerdict(const Whole& whole) {
  if (!needsParser(whole)) return std::nullopt;
  const xml::Finding finding =
      xml::parse(whole.walk.bytes, {whole.offsetOf(whole.digits), whole.validDigits});
  if (finding.kind == xml::Finding::wellFormed) return std::nullopt;
  return refused(whole.walk, finding);
}

std::optional<Verdict> markerVerdict(const Whole& whole) {
  if (whole.marker == "R" || whole.marker == "X") return std::nullopt;
  return Verdict{Layer::cipherMarker, Fault::damaged, whole.offsetOf(whole.marker), "C",
                 "The cipher marker is neither \"R\" nor \"X\"."};
}

std::optional<Verdict> checksumFormVerdict(const Whole& whole) {
  const std::string_view checksum = whole.walk.values[checksumSlot];
  const std::size_t valid = std::min(leadingDigits(checksum), checksumLength);
  if (valid == checksumLength && checksum.size() == checksumLength) return std::nullopt;
  return Verdict{Layer::hexadecimal, Fault::damaged, whole.offsetOf(checksum) + valid, "SUM",
                 "The checksum is not 32 digits 0 to 9 and A to F."};
}

std::optional<Verdict> payloadVerdict(const Whole& whole) {
  const std::size_t length = whole.digits.size();
  if (whole.validDigits == length && length % 2 == 0) return std::nullopt;
  return Verdict{
      Layer::hexadecimal, Fault::damaged, whole.offsetOf(whole.digits) + whole.validDigits,
      std::string(slotsOf(whole.walk.layout)[whole.walk.payloadSlot()].name),
      whole.validDigits < length ? "The payload holds something else than digits 0 to 9 and A to F."
                                 : "The payload has an odd number of digits."};
}

}  // namespace

bool isPlain(std::string_view value) {
  return std::ranges::all_of(
      value, [](char character) { return plainCharacters[static_cast<unsigned char>(character)]; });
}

Whole::Whole(const Walk& complete) : walk(complete) {
  const std::size_t slot = walk.payloadSlot();
  digits = walk.values[slot];
  marker = walk.values[slot - 1];
  date = walk.values[dateSlot];
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
