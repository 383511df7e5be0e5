// What the built-in expat calls instead of the C library: see BuiltIn.cmake.
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/posix/Errors.h"

extern "C" char* wenlolib_noEnvironment(const char* /*name*/) {
  return nullptr;
}

/// Guards against names made to collide in expat's tables. If the system has no randomness to give,
/// a file of bounded size still cannot do much harm.
extern "C" void wenlolib_fillWithRandom(void* bytes, std::size_t length) {
  const wenlolib::platform::posix::CancellationHold hold;
  const int error = errno;
  if (getentropy(bytes, length) != 0) std::memset(bytes, 0, length);
  errno = error;
}
