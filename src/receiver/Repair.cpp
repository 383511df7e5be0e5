#include "receiver/Repair.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>

#include "platform/Platform.h"
#include "wenlolib/codec.h"

namespace wenlolib::receiver {
namespace {

/// What a repair, or a serialiser that escapes every ">", writes, and what it replaces.
struct Escape {
  std::string_view text;
  std::string_view original;
};
constexpr std::array<Escape, 3> escapes = {{{"&lt;", "<"}, {"&amp;", "&"}, {"&gt;", ">"}}};

const Escape* escapeAt(std::string_view text) {
  const auto* found = std::ranges::find_if(
      escapes, [&](const Escape& escape) { return text.starts_with(escape.text); });
  return found == escapes.end() ? nullptr : found;
}

/// Calls `plain` with each part of a value that holds no escape, and `escape` with each escape.
template <class Plain, class Escaped>
void eachPart(std::string_view value, const Plain& plain, const Escaped& escaped) {
  while (!value.empty()) {
    const Escape* escape = escapeAt(value);
    if (escape != nullptr) {
      escaped(*escape);
      value.remove_prefix(escape->text.size());
      continue;
    }
    const std::size_t length = std::min(value.find('&', 1), value.size());
    plain(value.substr(0, length));
    value.remove_prefix(length);
  }
}

std::size_t escapesIn(std::string_view value) {
  std::size_t count = 0;
  eachPart(
      value, [](std::string_view) {}, [&](const Escape&) { ++count; });
  return count;
}

/// What is turned back together: each escape by itself if they are few, otherwise all those of a
/// value.
struct Units {
  bool singly = true;
  std::size_t count = 0;
};

constexpr std::size_t mostUnits = 6;

/// The values that a repair can have changed.
std::span<const std::string_view> repairable(const Match& match) {
  return std::span(match.values).subspan(checksumSlot + 1, match.payloadSlot() - checksumSlot - 1);
}

Units unitsOf(const Match& match) {
  std::size_t single = 0;
  std::size_t values = 0;
  for (const std::string_view value : repairable(match)) {
    const std::size_t count = escapesIn(value);
    single += count;
    values += count > 0 ? 1 : 0;
  }
  return single <= mostUnits ? Units{true, single} : Units{false, values};
}

/// The content with those units turned back whose bits are set in `chosen`, counted from the lowest
/// bit.
std::string takenBack(const Match& match, const Units& units, std::uint64_t chosen) {
  const std::string_view content = match.content();
  std::string text;
  text.reserve(content.size());
  const char* copied = content.data();
  const auto copyUntil = [&](const char* end) { text.append(copied, end); };
  for (const std::string_view value : repairable(match)) {
    if (escapesIn(value) == 0) continue;
    copyUntil(value.data());
    eachPart(
        value, [&](std::string_view part) { text.append(part); },
        [&](const Escape& escape) {
          text.append((chosen & 1) != 0 ? escape.original : escape.text);
          if (units.singly) chosen >>= 1;
        });
    if (!units.singly) chosen >>= 1;
    copied = value.data() + value.size();
  }
  copyUntil(content.data() + content.size());
  return text;
}

/// As many attempts as take a moment, but always a few: a large document must not be digested many
/// times.
std::size_t attempts(std::size_t contentSize) {
  constexpr std::size_t bytesInAMoment = std::size_t{16} << 20;
  return std::clamp<std::size_t>(bytesInAMoment / (contentSize + 1), 4,
                                 std::size_t{1} << mostUnits);
}

}  // namespace

std::string checksumOf(std::string_view text) {
  const auto digest = platform::current().digest->md5(
      {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  std::string checksum(2 * digest.size(), '0');
  ConvertHexToCharData(digest.data(), checksum.data(), std::int32_t{digest.size()}, 1);
  return checksum;
}

bool holdsUnrepaired(const Match& match) {
  const Units units = unitsOf(match);
  if (units.count == 0) return false;
  const std::string_view checksum = match.values[checksumSlot];
  if (checksumOf(takenBack(match, units, ~std::uint64_t{0})) == checksum) return true;
  if (units.count > mostUnits) return false;
  std::uint64_t chosen = (std::uint64_t{1} << units.count) - 1;
  for (std::size_t left = attempts(match.content().size()); left > 1 && chosen > 1; --left) {
    if (checksumOf(takenBack(match, units, --chosen)) == checksum) return true;
  }
  return false;
}

}  // namespace wenlolib::receiver
