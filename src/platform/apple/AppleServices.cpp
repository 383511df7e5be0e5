#include "platform/apple/AppleServices.h"

#include <CoreServices/CoreServices.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <new>

#include "platform/Time.h"
#include "platform/apple/Foundation.h"
#include "platform/apple/Objects.h"

namespace wenlolib::platform::apple {

// --- The system ---

std::optional<std::int32_t> AppleSystem::gestalt(Selector selector) {
  if (!isOffered("Gestalt")) return std::nullopt;
  SInt32 answer = 0;
  if (Gestalt(static_cast<OSType>(selector), &answer) != noErr) return std::nullopt;
  return answer;
}

// --- Local time ---

namespace {

/// The offset that the calendar's fields show. The zone's own answer is not always that one: from
/// 2038 on, Core Foundation's zones answer without daylight time, and its calendar shows it. For
/// fields of the Julian calendar (before 1582) the zone's answer is right.
std::int32_t offsetShown(const LocalTime& time, std::int64_t secondsSince1970,
                         CFTimeInterval zoneAnswer) {
  using namespace std::chrono;
  constexpr std::int64_t most = 26 * 3600;  // all zones are within it
  const sys_days day = year(static_cast<int>(time.year)) / time.month / time.day;
  const sys_seconds shown = day + hours(time.hour) + minutes(time.minute) + seconds(time.second);
  const std::int64_t offset = shown.time_since_epoch().count() - secondsSince1970;
  return static_cast<std::int32_t>(
      std::abs(offset) <= most ? offset : static_cast<std::int64_t>(zoneAnswer));
}

}  // namespace

std::optional<LocalTime> AppleCalendar::localTime(Instant date) {
  constexpr double limit = 8e12;  // the calendar counts milliseconds, and years in 32 bits
  const double seconds = std::floor(date.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return std::nullopt;
  const CFAbsoluteTime moment = seconds - kCFAbsoluteTimeIntervalSince1970;
  const Owned<CFCalendarRef> calendar(
      CFCalendarCreateWithIdentifier(nullptr, kCFGregorianCalendar));
  const Owned<CFTimeZoneRef> zone(CFTimeZoneCopyDefault());
  if (!calendar || !zone) throw std::bad_alloc();  // nothing else can make them fail
  CFCalendarSetTimeZone(calendar.get(), zone.get());
  LocalTime time;
  int year = 0;
  if (!CFCalendarDecomposeAbsoluteTime(calendar.get(), moment, "yMdHms", &year, &time.month,
                                       &time.day, &time.hour, &time.minute, &time.second)) {
    return std::nullopt;
  }
  time.year = year;
  const double answer = CFTimeZoneGetSecondsFromGMT(zone.get(), moment);
  time.secondsFromGMT =
      offsetShown(time, static_cast<std::int64_t>(seconds), static_cast<std::int32_t>(answer));
  return time;
}

Text AppleCalendar::formatted(Instant date, std::string_view format) {
  if (Text text = foundation::calendarFormatted(date, format)) return text;
  const auto time = localTime(date);
  return time ? Text(calendarText(*time, format)) : std::nullopt;
}

// --- The user ---

Text AppleUser::loginName() {
  return foundation::userName();
}

Text AppleUser::homeFolder() {
  return foundation::homeFolder();
}

Text AppleUser::libraryFolder() {
  return foundation::libraryFolder();
}

Container AppleUser::groupContainer(std::string_view groupIdentifier) {
  return foundation::groupContainer(groupIdentifier);
}

Text AppleUser::locale() {
  // The search goes on from the application's own domain to the global one.
  const Owned<CFPropertyListRef> setting(
      CFPreferencesCopyAppValue(CFSTR("AppleLocale"), kCFPreferencesCurrentApplication));
  return textOf(as<CFStringRef>(CFStringGetTypeID(), setting.get()));
}

// --- Identifiers ---

Text AppleUuids::create() {
  const Owned<CFUUIDRef> uuid(CFUUIDCreate(nullptr));
  if (!uuid) return std::nullopt;
  const Owned<CFStringRef> text(CFUUIDCreateString(nullptr, uuid.get()));
  return textOf(text.get());
}

}  // namespace wenlolib::platform::apple
