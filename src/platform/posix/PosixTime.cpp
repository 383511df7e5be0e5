#include "platform/posix/PosixTime.h"

#include <time.h>

#include <cmath>

#include "platform/posix/CalendarFormat.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::posix {

Instant PosixClock::now() {
  return std::chrono::system_clock::now();
}

std::optional<LocalTime> PosixCalendar::localTime(Instant date) {
  const CancellationHold hold;
  // Beyond any date, and within what a time_t holds.
  constexpr double limit = sizeof(time_t) > 4 ? 1e18 : 2147483648.0;
  const double seconds = std::floor(date.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return std::nullopt;
  const auto whole = static_cast<time_t>(seconds);
  struct tm fields {};
  if (::localtime_r(&whole, &fields) == nullptr) return std::nullopt;
  LocalTime time;
  time.year = std::int64_t{fields.tm_year} + 1900;
  time.month = fields.tm_mon + 1;
  time.day = fields.tm_mday;
  time.hour = fields.tm_hour;
  time.minute = fields.tm_min;
  time.second = fields.tm_sec;
  time.secondsFromGMT = static_cast<std::int32_t>(fields.tm_gmtoff);
  return time;
}

Text PosixCalendar::formatted(Instant date, std::string_view format) {
  const auto time = localTime(date);
  if (!time) return std::nullopt;
  return calendarText(*time, format);
}

}  // namespace wenlolib::platform::posix
