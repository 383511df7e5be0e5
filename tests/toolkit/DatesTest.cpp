#include <gtest/gtest.h>

#include <limits>

#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using Toolkit = CommonTooWenlolib;

class Dates : public PlatformTest {
 protected:
  /// The instant at which clocks in the current zone show this date.
  Instant local(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
                double second = 0) const {
    return dateOf(year, month, day, hour, minute, second) - Seconds(world.calendar.secondsFromGMT);
  }
};

TEST_F(Dates, AreShownInTheThreeLayouts) {
  const Instant date = local(2024, 3, 15, 9, 5, 7);
  EXPECT_EQ(Toolkit::calendarFormatString(date, 0), Text("2403"));
  EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("240315"));
  EXPECT_EQ(Toolkit::calendarWithTimeZoneFormatString(date), Text("2024-03-15T09:05:07+09:00"));
  EXPECT_EQ(Toolkit::dateFormatWithHourMinSec(date), Text("2024/03/15 09:05:07"));
}

TEST_F(Dates, TheDayIsWrittenForAFlagOfExactlyOne) {
  const Instant date = local(2009, 1, 5);
  EXPECT_EQ(Toolkit::calendarFormatString(date, 0), Text("0901"));
  EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("090105"));
  EXPECT_EQ(Toolkit::calendarFormatString(date, 2), Text("0901"));
  EXPECT_EQ(Toolkit::calendarFormatString(date, 255), Text("0901"));
}

TEST_F(Dates, TheYearIsCountedFrom2000AndNeverCut) {
  const struct {
    int year;
    const char* text;
  } table[] = {{2000, "0001"},   {2026, "2601"}, {2099, "9901"}, {2100, "10001"},
               {3000, "100001"}, {1999, "-101"}, {1990, "-1001"}};
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::calendarFormatString(local(row.year, 1, 1), 0), Text(row.text));
  }
}

TEST_F(Dates, YearsBeyondFourDigitsAreWrittenInFull) {
  EXPECT_EQ(Toolkit::dateFormatWithHourMinSec(local(12345, 1, 2, 3, 4, 5)),
            Text("12345/01/02 03:04:05"));
  EXPECT_EQ(Toolkit::dateFormatWithHourMinSec(local(987, 1, 2, 3, 4, 5)),
            Text("0987/01/02 03:04:05"));
}

TEST_F(Dates, TheOffsetHasASignAndTwoFields) {
  const struct {
    std::int32_t seconds;
    const char* text;
  } table[] = {
      {0, "+00:00"},     {-18000, "-05:00"}, {19800, "+05:30"},  {-12600, "-03:30"},
      {20700, "+05:45"}, {50400, "+14:00"},  {-43200, "-12:00"}, {-1, "-00:00"},
      {59, "+00:00"},    {1172, "+00:19"},   {-2670, "-00:44"},
  };
  for (const auto& row : table) {
    world.calendar.secondsFromGMT = row.seconds;
    EXPECT_EQ(Toolkit::calendarWithTimeZoneFormatString(local(2024, 3, 15, 9, 5, 7)),
              Text(std::string("2024-03-15T09:05:07") + row.text));
  }
}

TEST_F(Dates, NewYearComesWhenItDoesInTheZone) {
  const Instant date = dateOf(2024, 12, 31, 23, 59, 59);
  world.calendar.secondsFromGMT = 3600;
  EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("250101"));
  EXPECT_EQ(Toolkit::calendarWithTimeZoneFormatString(date), Text("2025-01-01T00:59:59+01:00"));
  world.calendar.secondsFromGMT = -3600;
  EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("241231"));
}

TEST_F(Dates, TheFractionOfASecondIsDropped) {
  EXPECT_EQ(Toolkit::dateFormatWithHourMinSec(local(2024, 3, 15, 9, 5, 7.999)),
            Text("2024/03/15 09:05:07"));
}

TEST_F(Dates, WhatTheCalendarCannotShowIsNull) {
  for (const double seconds : {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(), 1e300, -1e300}) {
    const Instant date{Seconds(seconds)};
    EXPECT_EQ(Toolkit::calendarFormatString(date, 0), std::nullopt);
    EXPECT_EQ(Toolkit::calendarWithTimeZoneFormatString(date), std::nullopt);
    EXPECT_EQ(Toolkit::dateFormatWithHourMinSec(date), std::nullopt);
  }
}

TEST_F(Dates, TheOSVersionIsAskedForAndChangesNothing) {
  const Instant date = local(2024, 3, 15, 9, 5, 7);
  for (const std::int32_t minor : {8, 9, 17}) {
    world.system.setVersion(10, minor, 0);
    EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("240315"));
  }
  world.system.answers.clear();
  world.journal.clear();
  EXPECT_EQ(Toolkit::calendarFormatString(date, 1), Text("240315"));
  EXPECT_EQ(world.journal.lines(), (Journal::Lines{"system.gestalt sys1", "calendar.localTime"}));
}

}  // namespace
}  // namespace wenlolib::tests
