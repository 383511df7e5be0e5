/// From the payload back to the record's contents.
#ifndef WENLOLIB_RECEIVER_CONTENTS_H
#define WENLOLIB_RECEIVER_CONTENTS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace wenlolib::receiver {

/// Deciphers `bytes` in place, with the cipher that the marker names and the key that the date
/// gives. False where the marker names none or the platform has no such cipher.
[[nodiscard]] bool decipher(char marker, std::string_view date, std::string& bytes);

/// The offset of the first byte that begins no character of UTF-8, or the text's size.
[[nodiscard]] std::size_t validUtf8(std::string_view text);

}  // namespace wenlolib::receiver

#endif
