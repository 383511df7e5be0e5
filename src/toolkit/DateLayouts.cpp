#include "toolkit/DateLayouts.h"

#include <optional>
#include <string>

#include "base/Answered.h"
#include "base/Integer.h"
#include "platform/Platform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

using platform::LocalTime;

std::optional<LocalTime> localTime(platform::Calendar& calendar, Instant date) {
  // Older systems name the calendar's units differently, so the OS version is asked for on every
  // one of these calls. Both names stand for the same units: the answer changes nothing.
  static_cast<void>(CommonTooWenlolib::systemVersionNum());
  return calendar.localTime(date);
}

}  // namespace

Text shortDate(platform::Calendar& calendar, Instant date, bool withDay) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  return decimal(time->year - 2000, 2) + calendarText(*time, withDay ? "%m%d" : "%m");
}

Text zonedDate(platform::Calendar& calendar, Instant date) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  std::string text = calendarText(*time, "%Y-%m-%dT%H:%M:%S%z");
  return text.insert(text.size() - 2, 1, ':');
}

Text slashedDate(platform::Calendar& calendar, Instant date) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  return calendarText(*time, "%Y/%m/%d %H:%M:%S");
}

Text CommonTooWenlolib::calendarFormatString(Instant date, std::uint8_t isNeedDay) noexcept {
  return answered(Text(),
                  [&] { return shortDate(*platform::current().calendar, date, isNeedDay == 1); });
}

Text CommonTooWenlolib::calendarWithTimeZoneFormatString(Instant date) noexcept {
  return answered(Text(), [&] { return zonedDate(*platform::current().calendar, date); });
}

Text CommonTooWenlolib::dateFormatWithHourMinSec(Instant date) noexcept {
  return answered(Text(), [&] { return slashedDate(*platform::current().calendar, date); });
}

}  // namespace wenlolib
