#include "receiver/Digits.h"

#include <algorithm>
#include <array>

namespace wenlolib::receiver {

using platform::DigitRun;
namespace {

constexpr std::uint8_t noDigit = 0x80;

/// The value of every character: one look-up each, since large payloads pass through here.
constexpr auto digitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(noDigit);
  constexpr std::string_view digits = "0123456789ABCDEF";
  for (std::size_t i = 0; i < digits.size(); ++i) {
    values[static_cast<unsigned char>(digits[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

std::uint8_t valueOf(char character) {
  return digitValues[static_cast<unsigned char>(character)];
}

}  // namespace

std::size_t leadingDigits(std::string_view text) {
  const auto end =
      std::ranges::find_if(text, [](char character) { return valueOf(character) == noDigit; });
  return static_cast<std::size_t>(end - text.begin());
}

std::size_t decodeDigits(std::string_view text, char* bytes) {
  const std::size_t pairs = text.size() / 2;
  const char* digits = text.data();
  // Whether all were digits is asked once, behind the loop: nearly always they were.
  unsigned all = 0;
  for (std::size_t i = 0; i < pairs; ++i) {
    const unsigned high = valueOf(digits[2 * i]);
    const unsigned low = valueOf(digits[2 * i + 1]);
    all |= high | low;
    bytes[i] = static_cast<char>((high << 4) | low);
  }
  if (text.size() % 2 != 0) all |= valueOf(text.back());
  return all < noDigit ? text.size() : leadingDigits(text);
}

DigitRun longestRunBehindTag(std::string_view bytes) {
  DigitRun longest{bytes.size(), 0};
  std::size_t at = bytes.find('>');
  while (at != std::string_view::npos) {
    const DigitRun run{at + 1, leadingDigits(bytes.substr(at + 1))};
    if (run.length > longest.length) longest = run;
    at = bytes.find('>', run.offset + run.length);
  }
  return longest;
}

}  // namespace wenlolib::receiver
