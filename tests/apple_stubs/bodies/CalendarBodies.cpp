#include <cmath>
#include <cstdarg>
#include <cstring>
#include <ctime>

#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;
const CFStringRef kCFGregorianCalendar = stubConstantString("gregorian");

// Seen: AppleServices.TellTheTime.
CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return world().now - kCFAbsoluteTimeIntervalSince1970;
}

// Seen: CoreFoundationCalendar.AgreesWithTheCLibraryInNearlyEveryZone.
CFCalendarRef CFCalendarCreateWithIdentifier(CFAllocatorRef /*allocator*/, CFStringRef identifier) {
  if (refused("CFCalendarCreateWithIdentifier") || identifier != kCFGregorianCalendar) {
    return nullptr;
  }
  return reference<CFCalendarRef>(new PlainObject(calendarType));
}

// Seen: CoreFoundationCalendar.AgreesWithTheCLibraryInNearlyEveryZone.
void CFCalendarSetTimeZone(CFCalendarRef calendar, CFTimeZoneRef zone) {
  behind<PlainObject>(calendar, calendarType)->number = behind<PlainObject>(zone, zoneType)->number;
}

// Seen: CoreFoundationCalendar.ShowsOldYearsAsTheyWereCounted. Here, dates before 1582 are shown in
// the Gregorian calendar too.
Boolean CFCalendarDecomposeAbsoluteTime(CFCalendarRef calendar, CFAbsoluteTime time,
                                        const char* components, ...) {
  if (refused("CFCalendarDecomposeAbsoluteTime") || std::strcmp(components, "yMdHms") != 0) {
    return 0;
  }
  const double offset = behind<PlainObject>(calendar, calendarType)->number;
  const auto local =
      static_cast<time_t>(std::floor(time + kCFAbsoluteTimeIntervalSince1970 + offset));
  tm fields{};
  gmtime_r(&local, &fields);
  va_list places;
  va_start(places, components);
  for (const int value : {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                          fields.tm_min, fields.tm_sec}) {
    *va_arg(places, int*) = value;
  }
  va_end(places);
  return 1;
}

// Seen: AppleCalendar.ShowsTheDefaultTimeZone.
CFTimeZoneRef CFTimeZoneCopyDefault() {
  if (refused("CFTimeZoneCopyDefault")) return nullptr;
  return reference<CFTimeZoneRef>(new PlainObject(zoneType, world().gmtOffset));
}

// Seen: CoreFoundationCalendar.ShowsDaylightTimeFrom2038OnWithItsOffset.
CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef zone, CFAbsoluteTime /*time*/) {
  return behind<PlainObject>(zone, zoneType)->number;
}

void wenlolib::tests::stubs::useTimeZone(int secondsFromGMT) {
  world().gmtOffset = secondsFromGMT;
}

double wenlolib::tests::stubs::systemTime() {
  return world().now;
}
