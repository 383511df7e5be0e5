// The platform of a program that only reads documents: digest and cipher. The receiver's code asks
// for no other service, and its archive contains no other code.
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
