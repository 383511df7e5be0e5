#include "base/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace wenlolib {
namespace {

constexpr std::uint64_t topBits = 0x8080808080808080U;

/// The number of ASCII bytes that `bytes` begins with, counted in words of eight. Long texts are
/// mostly ASCII, and this makes checking them much faster than the digest.
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

}  // namespace

// The ranges of the second byte are those of the table "Well-Formed UTF-8 Byte Sequences" in the
// Unicode standard.
std::size_t utf8CharacterLength(std::string_view bytes) noexcept {
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

std::size_t utf8Length(std::string_view bytes) noexcept {
  std::string_view rest = bytes;
  while (!rest.empty()) {
    rest.remove_prefix(asciiWords(rest));
    // Other characters are checked one by one, up to the next ASCII character.
    while (!rest.empty()) {
      const std::size_t length = utf8CharacterLength(rest);
      if (length == 0) return bytes.size() - rest.size();
      rest.remove_prefix(length);
      if (length == 1) break;
    }
  }
  return bytes.size();
}

bool isUtf8(std::string_view bytes) noexcept {
  return utf8Length(bytes) == bytes.size();
}

Text utf8OrNull(Text text) noexcept {
  if (text && !isUtf8(*text)) return std::nullopt;
  return text;
}

void appendUtf8(std::string& text, char32_t character) {
  const auto tail = [&](int shift) {
    text += static_cast<char>(0x80 | (character >> shift & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    tail(0);
  } else if (character < 0x10000) {
    text += static_cast<char>(0xE0 | character >> 12);
    tail(6), tail(0);
  } else {
    text += static_cast<char>(0xF0 | character >> 18);
    tail(12), tail(6), tail(0);
  }
}

// --- UTF-16 ---

namespace {

constexpr bool isHigh(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLow(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

Text utf8From(std::span<const std::uint16_t> units) {
  // Most texts are all ASCII and take one narrowing copy.
  const auto other = std::ranges::find_if(units, [](std::uint16_t unit) { return unit >= 0x80; });
  std::string text(units.begin(), other);
  text.reserve(units.size());
  for (std::size_t i = text.size(); i < units.size(); ++i) {
    char32_t character = units[i];
    if (isHigh(character)) {
      if (++i == units.size() || !isLow(units[i])) return std::nullopt;
      character = 0x10000 + ((character - 0xD800) << 10) + (units[i] - 0xDC00U);
    } else if (isLow(character)) {
      return std::nullopt;
    }
    appendUtf8(text, character);
  }
  return text;
}

std::size_t utf16From(std::string_view text, std::uint16_t* units) {
  std::uint16_t* const first = units;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length; ++k) {
      character = character << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
    }
    i += length;
    if (character >= 0x10000) {
      *units++ = static_cast<std::uint16_t>(0xD800 + ((character - 0x10000) >> 10));
      character = 0xDC00 + ((character - 0x10000) & 0x3FF);
    }
    *units++ = static_cast<std::uint16_t>(character);
  }
  return static_cast<std::size_t>(units - first);
}

}  // namespace wenlolib
