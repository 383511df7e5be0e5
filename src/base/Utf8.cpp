#include "base/Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace wenlolib {
namespace {

constexpr std::uint64_t topBits = 0x8080808080808080U;

/// The number of ASCII bytes that `bytes` begins with, counted in words of eight: long texts are
/// mostly ASCII, and this keeps the walk over them well above the speed of the digest.
std::size_t asciiWords(std::string_view bytes) noexcept {
  std::size_t length = 0;
  while (bytes.size() - length >= sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes.data() + length, sizeof word);
    if ((word & topBits) != 0) break;
    length += sizeof word;
  }
  return length;
}

bool between(unsigned char byte, unsigned char low, unsigned char high) noexcept {
  return byte >= low && byte <= high;
}

/// The length of the well-formed character that `bytes` (not empty) begins with, or 0. The ranges
/// of the second byte are those of the table "Well-Formed UTF-8 Byte Sequences" in the Unicode
/// standard.
std::size_t characterLength(std::string_view bytes) noexcept {
  const auto at = [&](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : static_cast<unsigned char>(0);
  };
  const auto follows = [&](std::size_t i) { return between(at(i), 0x80, 0xBF); };
  const unsigned char lead = at(0);
  if (lead < 0x80) return 1;
  if (between(lead, 0xC2, 0xDF)) return follows(1) ? 2 : 0;
  if (between(lead, 0xE0, 0xEF)) {
    const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
    return between(at(1), low, high) && follows(2) ? 3 : 0;
  }
  if (between(lead, 0xF0, 0xF4)) {
    const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
    return between(at(1), low, high) && follows(2) && follows(3) ? 4 : 0;
  }
  return 0;
}

}  // namespace

bool isUtf8(std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    bytes.remove_prefix(asciiWords(bytes));
    // A run of other characters is walked one by one until it ends in ASCII again.
    while (!bytes.empty()) {
      const std::size_t length = characterLength(bytes);
      if (length == 0) return false;
      bytes.remove_prefix(length);
      if (length == 1) break;
    }
  }
  return true;
}

Text utf8OrNull(Text text) noexcept {
  if (text && !isUtf8(*text)) return std::nullopt;
  return text;
}

}  // namespace wenlolib
