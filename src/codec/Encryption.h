/// Which cipher encrypts a payload.
#ifndef WENLOLIB_CODEC_ENCRYPTION_H
#define WENLOLIB_CODEC_ENCRYPTION_H

#include <cstdint>

#include "platform/Crypto.h"

namespace wenlolib {

/// Encrypts `source`, which must be less than 2 GiB, under `key`: with RC4 or, if that is refused,
/// with the cycling XOR. `destination` must have room for as many bytes. Returns the cipher's
/// marker, 'R' or 'X'.
[[nodiscard]] char encrypt(const platform::Md5Digest& key, platform::Bytes source,
                           std::uint8_t* destination);

}  // namespace wenlolib

#endif
