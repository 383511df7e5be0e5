/// MD5 from CommonCrypto.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEDIGEST_H
#define WENLOLIB_PLATFORM_APPLE_APPLEDIGEST_H

#include "platform/Crypto.h"

namespace wenlolib::platform::apple {

class AppleDigest : public Digest {
 public:
  Md5Digest md5(Bytes message) noexcept override;
};

}  // namespace wenlolib::platform::apple

#endif
