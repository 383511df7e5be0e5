/// The digest and the cipher on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLECRYPTO_H
#define WENLOLIB_PLATFORM_APPLE_APPLECRYPTO_H

#include "platform/Crypto.h"

namespace wenlolib::platform::apple {

// --- MD5, from CommonCrypto ---

class AppleDigest : public Digest {
 public:
  Md5Digest md5(Bytes message) noexcept override;
};

// --- RC4, from the Security framework's transforms ---

class TransformCipher : public Cipher {
 public:
  bool rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept override;
};

}  // namespace wenlolib::platform::apple

#endif
