#include "objc/FoundationCalendar.h"

#ifdef __APPLE__

#include "platform/Platform.h"

namespace wenlolib::objc {

// Core Foundation's zone is Foundation's.

std::optional<platform::LocalTime> FoundationCalendar::localTime(Instant date) {
  return platform::current().calendar->localTime(date);
}

Text FoundationCalendar::formatted(Instant date, std::string_view format) {
  return platform::current().calendar->formatted(date, format);
}

}  // namespace wenlolib::objc

#else

#include <chrono>
#include <cmath>
#include <new>

#include "objc/Private.h"
#include "platform/Time.h"

namespace wenlolib::objc {
namespace {

using platform::LocalTime;
using namespace std::chrono;

/// The 400 years after which the Gregorian calendar repeats itself.
using Cycles = duration<std::int64_t, std::ratio_multiply<days::period, std::ratio<146097>>>;

LocalTime fieldsOf(sys_time<seconds> local, std::int32_t secondsFromGMT) {
  // The standard library's years end at 32767, so the date is computed within the first cycle after
  // 1970.
  const auto cycles = floor<Cycles>(local.time_since_epoch());
  const auto day = floor<days>(local - cycles);
  const year_month_day date(day);
  const hh_mm_ss clock(local - cycles - day);
  LocalTime time;
  time.year = 400 * cycles.count() + int{date.year()};
  time.month = static_cast<int>(unsigned{date.month()});
  time.day = static_cast<int>(unsigned{date.day()});
  time.hour = static_cast<int>(clock.hours().count());
  time.minute = static_cast<int>(clock.minutes().count());
  time.second = static_cast<int>(clock.seconds().count());
  time.secondsFromGMT = secondsFromGMT;
  return time;
}

}  // namespace

std::optional<LocalTime> FoundationCalendar::localTime(Instant date) {
  constexpr double limit = 8e12;  // beyond any date: a quarter of a million years
  const double whole = std::floor(date.time_since_epoch().count());
  if (!(std::abs(whole) < limit)) return std::nullopt;
  if (!_last || _last->second != whole) {
    Shown now{whole, 0};
    if (foundationOffset(whole, !_last.has_value(), &now.offset) == 0) throw std::bad_alloc();
    _last = now;
  }
  const seconds local(static_cast<std::int64_t>(whole) + _last->offset);
  return fieldsOf(sys_time<seconds>(local), _last->offset);
}

Text FoundationCalendar::formatted(Instant date, std::string_view format) {
  const auto time = localTime(date);
  return time ? Text(platform::calendarText(*time, format)) : std::nullopt;
}

}  // namespace wenlolib::objc

#endif
