#include "objc/Unicode.h"

#include <algorithm>

namespace wenlolib::objc {
namespace {

constexpr bool isHigh(char32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

constexpr bool isLow(char32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

void append(std::string& text, char32_t character) {
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

}  // namespace

Text utf8From(std::span<const std::uint16_t> units) {
  // Most texts are ASCII up to their end, and take one narrowing copy.
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
    append(text, character);
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

}  // namespace wenlolib::objc
