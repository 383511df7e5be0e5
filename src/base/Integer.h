/// Integers in text, both ways, whatever the host's locale.
#ifndef WENLOLIB_BASE_INTEGER_H
#define WENLOLIB_BASE_INTEGER_H

#include <cstdint>
#include <string>
#include <string_view>

namespace wenlolib {

/// A blank in the C locale: space, tab, newline, vertical tab, form feed, carriage return.
[[nodiscard]] constexpr bool isBlank(char character) noexcept {
  return character == ' ' || (character >= '\t' && character <= '\r');
}

[[nodiscard]] constexpr bool isDigit(char character) noexcept {
  return character >= '0' && character <= '9';
}

/// The nearest 32-bit integer.
[[nodiscard]] std::int32_t saturated(std::int64_t value) noexcept;

/// The integer that `text` begins with: leading blanks, an optional sign, then the digits up to the
/// first other character. 0 where there are no digits; saturates at the 32-bit limits.
[[nodiscard]] std::int32_t leadingInteger(std::string_view text) noexcept;

/// Decimal text, with leading zeros up to `width` characters, the sign counted among them; a wider
/// number is written in full.
[[nodiscard]] std::string decimal(std::int64_t value, std::size_t width = 1);

}  // namespace wenlolib

#endif
