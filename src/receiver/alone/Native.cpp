// The platform of a program that reads documents and does nothing else: digest and cipher. No code
// of the receiver asks for another service, and no other code is in its archive.
#include "platform/Platform.h"
#include "platform/linux/NettleCrypto.h"

namespace wenlolib::platform {

const Platform& native() noexcept {
  static gnulinux::NettleDigest digest;
  static gnulinux::NettleCipher cipher;
  static const Platform platform = [] {
    Platform made{};
    made.digest = &digest;
    made.cipher = &cipher;
    return made;
  }();
  return platform;
}

}  // namespace wenlolib::platform
