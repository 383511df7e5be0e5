/// OS version and architecture on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLESYSTEM_H
#define WENLOLIB_PLATFORM_APPLE_APPLESYSTEM_H

#include "platform/System.h"

namespace wenlolib::platform::apple {

/// Asks the system anew at every call.
class AppleSystem : public System {
 public:
  std::optional<std::int32_t> gestalt(Selector selector) override;
};

}  // namespace wenlolib::platform::apple

#endif
