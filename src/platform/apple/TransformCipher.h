/// RC4 from the Security framework's transforms.
#ifndef WENLOLIB_PLATFORM_APPLE_TRANSFORMCIPHER_H
#define WENLOLIB_PLATFORM_APPLE_TRANSFORMCIPHER_H

#include "platform/Crypto.h"

namespace wenlolib::platform::apple {

class TransformCipher : public Cipher {
 public:
  bool rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept override;
};

}  // namespace wenlolib::platform::apple

#endif
