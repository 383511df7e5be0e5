#include "platform/posix/PosixTime.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/posix/Environment.h"

namespace wenlolib::tests {
namespace {

constexpr std::string_view layout = "%Y-%m-%dT%H:%M:%S%z";
constexpr double march = 1710461107;  // 2024-03-15 00:05:07 GMT

Text shown(double seconds) {
  return platform::posix::PosixCalendar().formatted(Instant(Seconds(seconds)), layout);
}

struct ZoneCase {
  const char* zone;
  double seconds;
  const char* shown;
  int offset;
};

TEST(PosixCalendar, ShowsDatesInTheZoneAsItIsThen) {
  const char* europe = "CET-1CEST,M3.5.0,M10.5.0/3";
  const ZoneCase cases[] = {
      {"GMT0", march, "2024-03-15T00:05:07+0000", 0},
      {"JST-9", march, "2024-03-15T09:05:07+0900", 32400},
      {"EST5", march, "2024-03-14T19:05:07-0500", -18000},
      {"IST-5:30", march, "2024-03-15T05:35:07+0530", 19800},
      {"NPT-5:45", march, "2024-03-15T05:50:07+0545", 20700},
      {"NST3:30", march, "2024-03-14T20:35:07-0330", -12600},
      {"ODD0:30", march, "2024-03-14T23:35:07-0030", -1800},
      {"LMT-0:53:28", march, "2024-03-15T00:58:35+0053", 3208},
      {europe, 1711846799, "2024-03-31T01:59:59+0100", 3600},
      {europe, 1711846800, "2024-03-31T03:00:00+0200", 7200},
      {europe, 1729990799, "2024-10-27T02:59:59+0200", 7200},
      {europe, 1729990800, "2024-10-27T02:00:00+0100", 3600},
      {"NZST-12NZDT,M9.5.0,M4.1.0/3", 1735687800, "2025-01-01T12:30:00+1300", 46800},
      {"JST-9", 1735657199, "2024-12-31T23:59:59+0900", 32400},
  };
  for (const ZoneCase& each : cases) {
    const Zone zone(each.zone);
    EXPECT_EQ(shown(each.seconds), Text(each.shown)) << each.zone;
    const auto time = platform::posix::PosixCalendar().localTime(Instant(Seconds(each.seconds)));
    ASSERT_TRUE(time);
    EXPECT_EQ(time->secondsFromGMT, each.offset) << each.zone;
  }
}

TEST(PosixCalendar, DropsFractionsTowardsThePast) {
  const Zone zone("GMT0");
  EXPECT_EQ(shown(march + 0.999), Text("2024-03-15T00:05:07+0000"));
  EXPECT_EQ(shown(0), Text("1970-01-01T00:00:00+0000"));
  EXPECT_EQ(shown(-0.001), Text("1969-12-31T23:59:59+0000"));
  EXPECT_EQ(shown(-1), Text("1969-12-31T23:59:59+0000"));
  EXPECT_EQ(shown(-1.5), Text("1969-12-31T23:59:58+0000"));
}

TEST(PosixCalendar, ShowsDatesFarAway) {
  const Zone zone("GMT0");
  EXPECT_EQ(shown(4102444800.0), Text("2100-01-01T00:00:00+0000"));
  EXPECT_EQ(shown(253402300800.0), Text("10000-01-01T00:00:00+0000"));
  EXPECT_EQ(shown(-62135596800.0), Text("0001-01-01T00:00:00+0000"));
}

TEST(PosixCalendar, CannotShowWhatIsNotADate) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double seconds :
       {infinity, -infinity, std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300, 1e18}) {
    EXPECT_EQ(shown(seconds), std::nullopt) << seconds;
    EXPECT_EQ(platform::posix::PosixCalendar().localTime(Instant(Seconds(seconds))), std::nullopt);
  }
}

TEST(PosixCalendar, HasEveryFieldInItsPlace) {
  const Zone zone("GMT0");
  const auto time = platform::posix::PosixCalendar().localTime(Instant(Seconds(march)));
  ASSERT_TRUE(time);
  EXPECT_EQ(time->year, 2024);
  EXPECT_EQ(time->month, 3);
  EXPECT_EQ(time->day, 15);
  EXPECT_EQ(time->hour, 0);
  EXPECT_EQ(time->minute, 5);
  EXPECT_EQ(time->second, 7);
}

TEST(PosixClock, IsTheSystemsWithItsFractions) {
  const auto before = std::chrono::system_clock::now();
  const Instant now = platform::posix::PosixClock().now();
  const auto after = std::chrono::system_clock::now();
  EXPECT_GE(now, Instant(before) - Seconds(1e-3));
  EXPECT_LE(now, Instant(after) + Seconds(1e-3));
  bool fraction = false;
  for (int i = 0; i < 100; ++i) {
    const double seconds = platform::posix::PosixClock().now().time_since_epoch().count();
    if (seconds != std::floor(seconds)) fraction = true;
  }
  EXPECT_TRUE(fraction);
}

}  // namespace
}  // namespace wenlolib::tests
