/// The clock on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLECLOCK_H
#define WENLOLIB_PLATFORM_APPLE_APPLECLOCK_H

#include <CoreFoundation/CoreFoundation.h>

#include "platform/Time.h"

namespace wenlolib::platform::apple {

/// Not the standard library's clock: built for today, that asks a call that came with 10.12.
class AppleClock : public Clock {
 public:
  Instant now() override {
    return Instant(Seconds(CFAbsoluteTimeGetCurrent() + kCFAbsoluteTimeIntervalSince1970));
  }
};

}  // namespace wenlolib::platform::apple

#endif
