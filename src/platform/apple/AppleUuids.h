/// Random identifiers on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEUUIDS_H
#define WENLOLIB_PLATFORM_APPLE_APPLEUUIDS_H

#include "platform/Uuids.h"

namespace wenlolib::platform::apple {

class AppleUuids : public Uuids {
 public:
  Text create() override;
};

}  // namespace wenlolib::platform::apple

#endif
