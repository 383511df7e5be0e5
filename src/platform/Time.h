/// The clock, local time, and dates by calendar-format directives.
#ifndef WENLOLIB_PLATFORM_TIME_H
#define WENLOLIB_PLATFORM_TIME_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"

namespace wenlolib::platform {

class Clock {
 public:
  virtual ~Clock() = default;

  /// Throws if the platform cannot answer.
  virtual Instant now() = 0;
};

/// A date in the Gregorian calendar and the process's default time zone.
struct LocalTime {
  std::int64_t year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;
  std::int32_t secondsFromGMT = 0;  // the zone's offset at that very date, positive to the east
};

class Calendar {
 public:
  virtual ~Calendar() = default;

  /// The local time of a date, the fraction of its second dropped; nothing for a date that the
  /// calendar cannot show. Throws if the platform cannot find out the zone.
  virtual std::optional<LocalTime> localTime(Instant date) = 0;

  /// A date by calendar-format directives in the default time zone: %Y four-digit year, %y, %m, %d,
  /// %H, %M, %S two digits each, %z sign and four digits of offset, %% a percent sign. Null for a
  /// date that the calendar cannot show.
  virtual Text formatted(Instant date, std::string_view format) = 0;
};

// --- Directives ---

/// `format` with its directives filled in; see `Calendar::formatted`. Anything that is not a
/// directive stays as it is.
[[nodiscard]] std::string calendarText(const LocalTime& time, std::string_view format);

}  // namespace wenlolib::platform

#endif
