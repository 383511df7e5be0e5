#include <array>
#include <cstddef>
#include <cstring>

#include "base/Integer.h"
#include "wenlolib/codec.h"

namespace {

/// The two digits of every byte: one look-up per byte, since large payloads pass through here.
constexpr auto digitPairs = [] {
  std::array<std::array<char, 2>, 256> pairs{};
  for (std::size_t byte = 0; byte < pairs.size(); ++byte) {
    pairs[byte] = {wenlolib::hexadecimalDigits[byte >> 4], wenlolib::hexadecimalDigits[byte & 15]};
  }
  return pairs;
}();

/// The value of one character of a pair, or -1 if the radix has no such digit.
int valueIn(int radix, char character) {
  const int value = wenlolib::digitValue(character);
  return value < radix ? value : -1;
}

}  // namespace

int32_t ConvertHexToCharData(const uint8_t* source, char* text, int32_t count, uint8_t /*flag*/) {
  if (source == nullptr || text == nullptr || count <= 0) return 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    std::memcpy(text + 2 * i, digitPairs[source[i]].data(), 2);
  }
  return 0;
}

int32_t ConvertCharDataToHex(const char* text, uint8_t* bytes, uint8_t radixFlag) {
  if (text == nullptr) return 1;
  const std::size_t length = std::strlen(text);
  if (length > 0 && bytes == nullptr) return 1;
  const int radix = radixFlag != 0 ? 16 : 10;
  for (std::size_t i = 0; i < length; i += 2) {
    // A text of odd length ends in half a pair: its other half reads as the terminating NUL, which
    // is not a digit.
    const int high = valueIn(radix, text[i]);
    const int low = valueIn(radix, text[i + 1]);
    if (high < 0 || low < 0) return 1;
    bytes[i / 2] = static_cast<uint8_t>(high * radix + low);
  }
  return 0;
}

int32_t hexPrint(const char* /*label*/, const uint8_t* /*bytes*/, int32_t /*length*/) {
  return 0;
}
