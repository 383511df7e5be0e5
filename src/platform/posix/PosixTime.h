/// The clock and local time on a POSIX system.
#ifndef WENLOLIB_PLATFORM_POSIX_POSIXTIME_H
#define WENLOLIB_PLATFORM_POSIX_POSIXTIME_H

#include "platform/Time.h"

namespace wenlolib::platform::posix {

class PosixClock : public Clock {
 public:
  Instant now() override;
};

/// Local time in the C library's zone. The host sets the zone. A change of the TZ variable counts
/// only after the host has called `tzset`.
class PosixCalendar : public Calendar {
 public:
  std::optional<LocalTime> localTime(Instant date) override;
  Text formatted(Instant date, std::string_view format) override;
};

}  // namespace wenlolib::platform::posix

#endif
