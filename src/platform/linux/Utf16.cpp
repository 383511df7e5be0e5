#include "platform/linux/Utf16.h"

#include <cstdint>

namespace wenlolib::platform::gnulinux {
namespace {

std::uint32_t unitAt(std::string_view bytes, std::size_t offset) {
  const auto high = static_cast<unsigned char>(bytes[offset]);
  const auto low = static_cast<unsigned char>(bytes[offset + 1]);
  return static_cast<std::uint32_t>(high << 8 | low);
}

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

void appendUtf8(std::string& text, std::uint32_t character) {
  const auto append = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) return append(character);
  if (character < 0x800) {
    append(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
  }
  append(0x80 | (character & 0x3F));
}

}  // namespace

std::optional<std::string> utf8FromUtf16(std::string_view bytes) {
  std::string text;
  for (std::size_t offset = 0; offset + 2 <= bytes.size(); offset += 2) {
    const std::uint32_t unit = unitAt(bytes, offset);
    if (!isHighSurrogate(unit)) {
      if (isLowSurrogate(unit)) return std::nullopt;
      appendUtf8(text, unit);
      continue;
    }
    offset += 2;
    if (offset + 2 > bytes.size()) return std::nullopt;
    const std::uint32_t partner = unitAt(bytes, offset);
    if (!isLowSurrogate(partner)) return std::nullopt;
    appendUtf8(text, 0x10000 + ((unit - 0xD800) << 10) + (partner - 0xDC00));
  }
  return text;
}

}  // namespace wenlolib::platform::gnulinux
