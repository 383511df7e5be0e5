#include "platform/apple/AppleServices.h"

#include <CoreServices/CoreServices.h>

#include <cmath>
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
  time.secondsFromGMT = static_cast<std::int32_t>(CFTimeZoneGetSecondsFromGMT(zone.get(), moment));
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
