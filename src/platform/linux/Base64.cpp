#include "platform/linux/Base64.h"

#include <algorithm>
#include <cstdint>

#include "base/Integer.h"

namespace wenlolib::platform::gnulinux {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The six bits that a character stands for, or -1.
int sextet(char character) {
  if (character >= 'A' && character <= 'Z') return character - 'A';
  if (character >= 'a' && character <= 'z') return character - 'a' + 26;
  if (character >= '0' && character <= '9') return character - '0' + 52;
  if (character == '+') return 62;
  return character == '/' ? 63 : -1;
}

}  // namespace

void appendBase64(std::string& text, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto group = bytes.first(std::min<std::size_t>(3, bytes.size()));
    bytes = bytes.subspan(group.size());
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) bits = bits << 8 | (i < group.size() ? group[i] : 0U);
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= group.size() ? alphabet[bits >> (18 - 6 * i) & 63U] : '=';
    }
  }
}

std::optional<Value::Data> dataFromBase64(std::string_view text) {
  Value::Data data;
  data.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  std::size_t characters = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (isBlank(character)) continue;
    const int value = sextet(character);
    if (character == '=') ++padding;
    if (character != '=' && (value < 0 || padding > 0)) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(std::max(value, 0));
    if (++characters % 4 != 0) continue;
    if (padding > 2) return std::nullopt;
    for (std::size_t i = 0; i < 3 - padding; ++i) {
      data.push_back(static_cast<std::uint8_t>(bits >> (16 - 8 * i) & 0xFFU));
    }
  }
  if (characters % 4 != 0) return std::nullopt;
  return data;
}

}  // namespace wenlolib::platform::gnulinux
