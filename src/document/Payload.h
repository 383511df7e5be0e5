/// The protected payload of a survey document.
#ifndef WENLOLIB_DOCUMENT_PAYLOAD_H
#define WENLOLIB_DOCUMENT_PAYLOAD_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// The memory that protecting `n` bytes of contents takes, asked for before anything else is done
/// for a document, so that a lack of it is found out early.
struct WorkingBuffers {
  std::unique_ptr<std::uint8_t[]> input;   // n bytes
  std::unique_ptr<std::uint8_t[]> cipher;  // 2 * n bytes
  std::string digits;                      // 2 * n characters

  /// Nothing when the memory is not to be had, or when n is 2 GiB or more: lengths are 32 bits wide
  /// in the codec.
  [[nodiscard]] static std::optional<WorkingBuffers> allocate(std::size_t n) noexcept;
};

struct Payload {
  char marker = 'R';   // 'R' for RC4, 'X' for the cycling XOR
  std::string digits;  // upper-case hexadecimal, two digits a byte
};

/// Encrypts `contents` under the MD5 digest of `date`, with RC4 or, where that is refused, with the
/// cycling XOR, and writes it as hexadecimal text. Without a date nothing is encrypted: the payload
/// is all zeros then. `buffers` must have been allocated for the length of `contents`; each goes as
/// soon as it is used up.
[[nodiscard]] Payload protect(WorkingBuffers buffers, const Text& date, std::string_view contents);

}  // namespace wenlolib

#endif
