#include "platform/linux/LinuxPlatform.h"

#include <new>

namespace wenlolib::platform {

const Platform& native() noexcept {
  // Never destroyed: a host may still record while its process is ending. The root is empty, so
  // nothing is left on the heap when the library is unloaded.
  alignas(gnulinux::LinuxPlatform) static unsigned char place[sizeof(gnulinux::LinuxPlatform)];
  static const auto* const port = new (place) gnulinux::LinuxPlatform("");
  return port->services();
}

}  // namespace wenlolib::platform
