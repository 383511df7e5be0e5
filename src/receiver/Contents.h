/// From the digits of the payload back to the record's contents.
#ifndef WENLOLIB_RECEIVER_CONTENTS_H
#define WENLOLIB_RECEIVER_CONTENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Xml.h"

namespace wenlolib::receiver {

// --- Hexadecimal digits, as the documents have them: no small letters ---

/// The number of digits that `text` begins with.
[[nodiscard]] std::size_t leadingDigits(std::string_view text);

/// Writes one byte a pair, half as many as `text` has characters, rounded down. Answers the number
/// of digits that `text` begins with; where that is not all of it, the bytes mean nothing.
[[nodiscard]] std::size_t decodeDigits(std::string_view text, char* bytes);

/// The longest run of digits that stands right after a ">". Empty, at the end, where none does.
[[nodiscard]] platform::DigitRun longestRunAfterTag(std::string_view bytes);

// --- The cipher ---

/// Deciphers `bytes` in place, with the cipher that the marker names and the key that the date
/// gives. False where the marker names none or the platform has no such cipher.
[[nodiscard]] bool decipher(char marker, std::string_view date, std::string& bytes);

}  // namespace wenlolib::receiver

#endif
