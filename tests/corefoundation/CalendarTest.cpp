// What the port takes for granted of Core Foundation's calendar and time zones.
#include <CoreFoundation/CoreFoundation.h>
#include <time.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "platform/apple/AppleServices.h"
#include "platform/apple/Objects.h"
#include "platform/apple/StubTest.h"

namespace wenlolib::tests {
namespace {

using platform::LocalTime;
using platform::apple::Owned;

/// In Core Foundation and in the C library alike. False if Core Foundation has no such zone.
bool useZone(const std::string& name) {
  ::setenv("TZ", name.c_str(), 1);
  ::tzset();
  const Owned<CFStringRef> text(
      CFStringCreateWithCString(nullptr, name.c_str(), kCFStringEncodingUTF8));
  const Owned<CFTimeZoneRef> zone(CFTimeZoneCreateWithName(nullptr, text.get(), true));
  if (zone) CFTimeZoneSetDefault(zone.get());
  return static_cast<bool>(zone);
}

class CoreFoundationCalendar : public PortTest {
 protected:
  ~CoreFoundationCalendar() override { useZone("UTC"); }

  std::string shown(std::int64_t seconds) {
    const auto time = calendar.localTime(Instant(Seconds(static_cast<double>(seconds))));
    if (!time) return "nothing";
    return platform::calendarText(*time, "%Y-%m-%dT%H:%M:%S") + " " +
           std::to_string(time->secondsFromGMT);
  }

  /// The same by the C library.
  static std::string expected(std::int64_t seconds) {
    const time_t moment = seconds;
    tm fields{};
    localtime_r(&moment, &fields);
    LocalTime time;
    time.year = fields.tm_year + 1900;
    time.month = fields.tm_mon + 1;
    time.day = fields.tm_mday;
    time.hour = fields.tm_hour;
    time.minute = fields.tm_min;
    time.second = fields.tm_sec;
    return platform::calendarText(time, "%Y-%m-%dT%H:%M:%S") + " " +
           std::to_string(fields.tm_gmtoff);
  }

  platform::apple::AppleCalendar calendar;
};

std::vector<std::string> zonesOfThisSystem() {
  std::vector<std::string> zones;
  std::ifstream table("/usr/share/zoneinfo/tzdata.zi");
  for (std::string line; std::getline(table, line);) {
    if (line.starts_with("Z ")) zones.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return zones;
}

/// Calls `check` with random moments in every zone that both libraries know.
template <class Check>
void inEveryZone(std::int64_t end, Check&& check) {
  std::mt19937_64 random(20261122);
  std::uniform_int_distribution<std::int64_t> moments(0, end);
  std::size_t count = 0;
  for (const std::string& zone : zonesOfThisSystem()) {
    if (!useZone(zone)) continue;
    ++count;
    SCOPED_TRACE(zone);
    for (int i = 0; i < 200; ++i) check(moments(random));
  }
  EXPECT_GT(count, 300U);
}

constexpr std::int64_t endOf2037 = 2'145'916'799;
constexpr std::int64_t endOf2199 = 7'258'118'399;

/// Both know the world's zones from the same source, but not of the same year: a few have changed.
TEST_F(CoreFoundationCalendar, AgreesWithTheCLibraryInNearlyEveryZone) {
  std::set<std::string> different;
  inEveryZone(endOf2037, [&](std::int64_t moment) {
    if (shown(moment) != expected(moment)) different.insert(std::getenv("TZ"));
  });
  EXPECT_LT(different.size(), 30U) << testing::PrintToString(different);
  for (const char* zone : {"Europe/Berlin", "America/New_York", "Asia/Tokyo", "Asia/Kathmandu",
                           "Australia/Lord_Howe", "Pacific/Apia", "Pacific/Kiritimati"}) {
    EXPECT_FALSE(different.contains(zone)) << zone;
  }
}

/// The two libraries' rules differ in a few zones, such as Morocco's. But what is
/// shown is always the same moment.
TEST_F(CoreFoundationCalendar, ShowsAnOffsetThatFitsItsFields) {
  inEveryZone(endOf2199, [&](std::int64_t moment) {
    const auto time = calendar.localTime(Instant(Seconds(static_cast<double>(moment))));
    ASSERT_TRUE(time);
    tm fields{};
    fields.tm_year = static_cast<int>(time->year) - 1900;
    fields.tm_mon = time->month - 1;
    fields.tm_mday = time->day;
    fields.tm_hour = time->hour;
    fields.tm_min = time->minute;
    fields.tm_sec = time->second;
    EXPECT_EQ(timegm(&fields) - time->secondsFromGMT, moment);
  });
}

TEST_F(CoreFoundationCalendar, ShowsDaylightTimeFrom2038OnWithItsOffset) {
  ASSERT_TRUE(useZone("Europe/Berlin"));
  EXPECT_EQ(shown(1'720'000'000), "2024-07-03T11:46:40 7200");
  EXPECT_EQ(shown(2'224'000'000), "2040-06-22T19:46:40 7200");
  ASSERT_TRUE(useZone("America/New_York"));
  EXPECT_EQ(shown(2'224'000'000), "2040-06-22T13:46:40 -14400");
  EXPECT_EQ(shown(2'240'000'000), "2040-12-24T17:13:20 -18000");
}

/// Before 15 October 1582 by the Julian calendar, and before the year 1 backwards from 1 BC on. On
/// Linux the port shows both in the Gregorian calendar, with a year 0.
TEST_F(CoreFoundationCalendar, ShowsOldYearsAsTheyWereCounted) {
  EXPECT_EQ(shown(-12'219'292'800), "1582-10-15T00:00:00 0");
  EXPECT_EQ(shown(-12'219'292'801), "1582-10-04T23:59:59 0");
  EXPECT_EQ(shown(-62'135'769'600), "0001-01-01T00:00:00 0");
  EXPECT_EQ(shown(-62'135'769'601), "0001-12-31T23:59:59 0");
}

TEST_F(CoreFoundationCalendar, ReachesTheEndsOfWhatThePortAsksFor) {
  EXPECT_EQ(shown(7'999'999'999'999), "255479-11-28T14:13:19 0");
  EXPECT_NE(shown(-7'999'999'999'999), "nothing");
}

TEST_F(CoreFoundationCalendar, KnowsHalfHours) {
  ASSERT_TRUE(useZone("Australia/Lord_Howe"));
  EXPECT_EQ(shown(1'704'067'200), "2024-01-01T11:00:00 39600");
  EXPECT_EQ(shown(1'719'792'000), "2024-07-01T10:30:00 37800");
}

}  // namespace
}  // namespace wenlolib::tests
