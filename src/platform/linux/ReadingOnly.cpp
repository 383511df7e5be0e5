// The platform of a program that reads documents and does nothing else: digest and cipher. No code
// of the receiver asks for another service, and no other code is in its archive.
#include "platform/Platform.h"
#include "platform/linux/MbedCrypto.h"

namespace wenlolib::platform {

const Platform& native() noexcept {
  static gnulinux::MbedDigest digest;
  static gnulinux::MbedCipher cipher;
  static const Platform platform = [] {
    Platform made{};
    made.digest = &digest;
    made.cipher = &cipher;
    return made;
  }();
  return platform;
}

}  // namespace wenlolib::platform
