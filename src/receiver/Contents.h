/// From the digits of the payload back to the record's contents.
#ifndef WENLOLIB_RECEIVER_CONTENTS_H
#define WENLOLIB_RECEIVER_CONTENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Xml.h"

namespace wenlolib::receiver {

// --- Hexadecimal digits, as the documents have them: no lower-case letters ---

/// The number of digits that `text` begins with.
[[nodiscard]] std::size_t leadingDigits(std::string_view text);

/// Writes one byte per pair of digits: half as many as `text` has characters, rounded down. Returns
/// the number of digits that `text` begins with; if that is not all of it, the bytes mean nothing.
[[nodiscard]] std::size_t decodeDigits(std::string_view text, char* bytes);

/// The longest run of digits that stands right after a ">". Empty, at the end, if there is none.
[[nodiscard]] platform::DigitRun longestRunAfterTag(std::string_view bytes);

// --- The cipher ---

/// Deciphers `bytes` in place, with the cipher that the marker names and the key that the date
/// gives. False if the marker names none or the platform does not have it.
[[nodiscard]] bool decipher(char marker, std::string_view date, std::string& bytes);

}  // namespace wenlolib::receiver

#endif
