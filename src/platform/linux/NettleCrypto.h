/// MD5 and RC4 from nettle: no global state, no provider that may be missing, unloads cleanly.
#ifndef WENLOLIB_PLATFORM_LINUX_NETTLECRYPTO_H
#define WENLOLIB_PLATFORM_LINUX_NETTLECRYPTO_H

#include "platform/Crypto.h"

namespace wenlolib::platform::gnulinux {

class NettleDigest : public Digest {
 public:
  Md5Digest md5(Bytes message) noexcept override;
};

class NettleCipher : public Cipher {
 public:
  bool rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept override;
};

}  // namespace wenlolib::platform::gnulinux

#endif
