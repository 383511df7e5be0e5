/// Digest and cipher.
#ifndef WENLOLIB_PLATFORM_CRYPTO_H
#define WENLOLIB_PLATFORM_CRYPTO_H

#include <array>
#include <cstdint>
#include <span>

namespace wenlolib::platform {

using Bytes = std::span<const std::uint8_t>;
using Md5Digest = std::array<std::uint8_t, 16>;

class Digest {
 public:
  virtual ~Digest() = default;

  /// MD5 (RFC 1321).
  virtual Md5Digest md5(Bytes message) noexcept = 0;
};

class Cipher {
 public:
  virtual ~Cipher() = default;

  /// Plain RC4 (ARCFOUR): the keystream from its first byte, no initialisation vector, no padding.
  /// Writes exactly `source.size()` bytes to `destination` and returns true. `destination` may
  /// overlap the source and the key in any way: both are used as they were before the call. If the
  /// service refuses, nothing is written and the result is false.
  virtual bool rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept = 0;
};

}  // namespace wenlolib::platform

#endif
