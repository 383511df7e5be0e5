/// Calls that not every system has.
#ifndef WENLOLIB_PLATFORM_APPLE_OFFERED_H
#define WENLOLIB_PLATFORM_APPLE_OFFERED_H

#include <dlfcn.h>

namespace wenlolib::platform::apple {

/// Whether the running system has the function `name`. The frameworks whose calls are out of date
/// are linked weakly: the library loads without them, but a call that is gone must not be made. The
/// name is looked up because a compiler may take the address of a function for never null.
[[nodiscard]] inline bool isOffered(const char* name) noexcept {
  return ::dlsym(RTLD_DEFAULT, name) != nullptr;
}

}  // namespace wenlolib::platform::apple

#endif
