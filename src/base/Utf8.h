/// Text in UTF-8, and in UTF-16 as property lists and Foundation use it.
#ifndef WENLOLIB_BASE_UTF8_H
#define WENLOLIB_BASE_UTF8_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// The length of the well-formed character that `bytes` (not empty) begins with, or 0.
[[nodiscard]] std::size_t utf8CharacterLength(std::string_view bytes) noexcept;

/// The number of bytes of well-formed UTF-8 that `bytes` begins with.
[[nodiscard]] std::size_t utf8Length(std::string_view bytes) noexcept;

/// True when `bytes` is well-formed UTF-8 as RFC 3629 defines it: no overlong form, no surrogate,
/// nothing above U+10FFFF. The empty text is well formed.
[[nodiscard]] bool isUtf8(std::string_view bytes) noexcept;

/// The text itself if it is UTF-8, else null.
[[nodiscard]] Text utf8OrNull(Text text) noexcept;

/// Appends a character up to U+10FFFF, which must not be half of a surrogate pair.
void appendUtf8(std::string& text, char32_t character);

/// Text from UTF-16. Null if half a surrogate pair stands alone.
[[nodiscard]] Text utf8From(std::span<const std::uint16_t> units);

/// Writes `text`, which must be well-formed UTF-8, in UTF-16: at most one unit for each of its
/// bytes. Returns the number of units written.
std::size_t utf16From(std::string_view text, std::uint16_t* units);

}  // namespace wenlolib

#endif
