/// Hexadecimal digits, as the documents have them: no small letters.
#ifndef WENLOLIB_RECEIVER_DIGITS_H
#define WENLOLIB_RECEIVER_DIGITS_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/Xml.h"

namespace wenlolib::receiver {

/// The number of digits that `text` begins with.
[[nodiscard]] std::size_t leadingDigits(std::string_view text);

/// Writes one byte a pair, half as many as `text` has characters, rounded down. Answers the number
/// of digits that `text` begins with; where that is not all of it, the bytes mean nothing.
[[nodiscard]] std::size_t decodeDigits(std::string_view text, char* bytes);

/// The longest run of digits that stands right behind a ">". Empty, at the end, where none does.
[[nodiscard]] platform::DigitRun longestRunBehindTag(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
