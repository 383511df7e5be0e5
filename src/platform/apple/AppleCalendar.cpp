#include "platform/apple/AppleCalendar.h"

#include <cmath>
#include <new>

#include "platform/CalendarFormat.h"
#include "platform/apple/Foundation.h"
#include "platform/apple/Owned.h"

namespace wenlolib::platform::apple {

std::optional<LocalTime> AppleCalendar::localTime(Instant date) {
  constexpr double limit = 8e12;  // the calendar counts milliseconds, and years in 32 bits
  const double seconds = std::floor(date.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return std::nullopt;
  const CFAbsoluteTime moment = seconds - kCFAbsoluteTimeIntervalSince1970;
  const Owned<CFCalendarRef> calendar(
      CFCalendarCreateWithIdentifier(nullptr, kCFGregorianCalendar));
  const Owned<CFTimeZoneRef> zone(CFTimeZoneCopyDefault());
  if (!calendar || !zone) throw std::bad_alloc();  // nothing else can be in their way
  CFCalendarSetTimeZone(calendar.get(), zone.get());
  LocalTime time;
  int year = 0;
  if (!CFCalendarDecomposeAbsoluteTime(calendar.get(), moment, "yMdHms", &year, &time.month,
                                       &time.day, &time.hour, &time.minute, &time.second)) {
    return std::nullopt;
  }
  time.year = year;
  time.secondsFromGMT = static_cast<std::int32_t>(CFTimeZoneGetSecondsFromGMT(zone.get(), moment));
  return time;
}

Text AppleCalendar::formatted(Instant date, std::string_view format) {
  if (Text text = foundation::calendarFormatted(date, format)) return text;
  const auto time = localTime(date);
  return time ? Text(calendarText(*time, format)) : std::nullopt;
}

}  // namespace wenlolib::platform::apple
