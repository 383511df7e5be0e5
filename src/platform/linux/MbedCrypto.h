/// MD5 and RC4 from mbedTLS: they use no global state, no environment and no memory of their own.
#ifndef WENLOLIB_PLATFORM_LINUX_MBEDCRYPTO_H
#define WENLOLIB_PLATFORM_LINUX_MBEDCRYPTO_H

#include "platform/Crypto.h"

namespace wenlolib::platform::gnulinux {

class MbedDigest : public Digest {
 public:
  Md5Digest md5(Bytes message) noexcept override;
};

class MbedCipher : public Cipher {
 public:
  bool rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept override;
};

}  // namespace wenlolib::platform::gnulinux

#endif
