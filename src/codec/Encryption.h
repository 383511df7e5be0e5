/// Which cipher encrypts a payload.
#ifndef WENLOLIB_CODEC_ENCRYPTION_H
#define WENLOLIB_CODEC_ENCRYPTION_H

#include <cstdint>

#include "platform/Crypto.h"

namespace wenlolib {

/// Encrypts `source`, less than 2 GiB, under `key`: with RC4, and where that is refused with the
/// cycling XOR. `destination` has room for as many bytes. Answers the cipher's marker, 'R' or 'X'.
[[nodiscard]] char encrypt(const platform::Md5Digest& key, platform::Bytes source,
                           std::uint8_t* destination);

}  // namespace wenlolib

#endif
