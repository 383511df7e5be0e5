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

std::string dateText(const LocalTime& time, const char* separator) {
  return decimal(time.year, 4) + separator + decimal(time.month, 2) + separator +
         decimal(time.day, 2);
}

std::string clockText(const LocalTime& time) {
  return decimal(time.hour, 2) + ":" + decimal(time.minute, 2) + ":" + decimal(time.second, 2);
}

std::string offsetText(std::int64_t seconds) {
  const char* sign = seconds >= 0 ? "+" : "-";
  if (seconds < 0) seconds = -seconds;
  return sign + decimal(seconds / 3600, 2) + ":" + decimal(seconds % 3600 / 60, 2);
}

}  // namespace

Text shortDate(platform::Calendar& calendar, Instant date, bool withDay) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  const std::string yearMonth = decimal(time->year - 2000, 2) + decimal(time->month, 2);
  return withDay ? yearMonth + decimal(time->day, 2) : yearMonth;
}

Text zonedDate(platform::Calendar& calendar, Instant date) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  return dateText(*time, "-") + "T" + clockText(*time) + offsetText(time->secondsFromGMT);
}

Text slashedDate(platform::Calendar& calendar, Instant date) {
  const auto time = localTime(calendar, date);
  if (!time) return std::nullopt;
  return dateText(*time, "/") + " " + clockText(*time);
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
