/// Local time on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLECALENDAR_H
#define WENLOLIB_PLATFORM_APPLE_APPLECALENDAR_H

#include "platform/Time.h"

namespace wenlolib::platform::apple {

/// Local time in Core Foundation's default time zone, which a host may have set for its process.
class AppleCalendar : public Calendar {
 public:
  std::optional<LocalTime> localTime(Instant date) override;
  Text formatted(Instant date, std::string_view format) override;
};

}  // namespace wenlolib::platform::apple

#endif
