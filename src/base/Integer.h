/// Integers to and from text, whatever the host's locale.
#ifndef WENLOLIB_BASE_INTEGER_H
#define WENLOLIB_BASE_INTEGER_H

#include <cstdint>
#include <optional>
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

/// The value of a hexadecimal digit in either case; -1 for any other character.
[[nodiscard]] constexpr int digitValue(char character) noexcept {
  if (isDigit(character)) return character - '0';
  if (character >= 'a' && character <= 'f') return 10 + (character - 'a');
  if (character >= 'A' && character <= 'F') return 10 + (character - 'A');
  return -1;
}

/// The hexadecimal digits as this library writes them.
inline constexpr std::string_view hexadecimalDigits = "0123456789ABCDEF";

/// Two hexadecimal digits for each byte.
[[nodiscard]] std::string hexadecimalText(std::string_view bytes);

/// The nearest 32-bit integer.
[[nodiscard]] std::int32_t saturated(std::int64_t value) noexcept;

/// The integer that `text` begins with: leading blanks, an optional sign, then the digits up to the
/// first other character. 0 if there are no digits; saturates at the 32-bit limits.
[[nodiscard]] std::int32_t leadingInteger(std::string_view text) noexcept;

/// Takes the number that `text` begins with off its front: the digits up to the first other
/// character. Nothing, with `text` unchanged, if `text` does not begin with a digit of the base or
/// if the number needs more than 64 bits.
[[nodiscard]] std::optional<std::uint64_t> takeNumber(std::string_view& text,
                                                      int base = 10) noexcept;

/// Decimal text, with leading zeros up to `width` characters, the sign counted among them; a wider
/// number is written in full.
[[nodiscard]] std::string decimal(std::int64_t value, std::size_t width = 1);

}  // namespace wenlolib

#endif
