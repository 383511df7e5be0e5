#include "platform/apple/ApplePlatform.h"

#include <new>

namespace wenlolib::platform {

const Platform& native() noexcept {
  // Never destroyed: a host may still record while its process is ending. The root is empty, so
  // nothing is left on the heap when the library is unloaded.
  alignas(apple::ApplePlatform) static unsigned char place[sizeof(apple::ApplePlatform)];
  static const auto* const port = new (place) apple::ApplePlatform("");
  return port->services();
}

}  // namespace wenlolib::platform
