#include "platform/Time.h"

#include <gtest/gtest.h>

#include <string>

namespace wenlolib::tests {
namespace {

using platform::calendarText;
using platform::LocalTime;

TEST(CalendarFormat, FillsInDirectivesAndNothingElse) {
  const LocalTime time{2024, 3, 5, 9, 8, 7, 32400};
  struct Case {
    const char* format;
    const char* text;
  };
  for (const Case& each : {Case{"", ""},
                           {"%Y", "2024"},
                           {"%y", "24"},
                           {"%m", "03"},
                           {"%d", "05"},
                           {"%H", "09"},
                           {"%M", "08"},
                           {"%S", "07"},
                           {"%z", "+0900"},
                           {"%%", "%"},
                           {"%%Y", "%Y"},
                           {"%", "%"},
                           {"100%", "100%"},
                           {"%y%m", "2403"},
                           {"%Y-%m-%dT%H:%M:%S+09:00", "2024-03-05T09:08:07+09:00"},
                           {"%Y-%m-%dT%H:%M:%S%z", "2024-03-05T09:08:07+0900"},
                           {"no directive", "no directive"},
                           {"Größe %d", "Größe 05"},
                           {"%q", "%q"},
                           {"%Q%d", "%Q05"}}) {
    EXPECT_EQ(calendarText(time, each.format), each.text) << each.format;
  }
}

TEST(CalendarFormat, KeepsANulBetweenDirectives) {
  using namespace std::string_literals;
  EXPECT_EQ(calendarText(LocalTime{}, "%d\0%m"s),
            "01\0"
            "01"s);
}

TEST(CalendarFormat, PadsYearsAndNeverCutsThem) {
  struct Case {
    std::int64_t year;
    const char* four;
    const char* two;
  };
  for (const Case& each : {Case{2000, "2000", "00"},
                           {2009, "2009", "09"},
                           {1999, "1999", "99"},
                           {7, "0007", "07"},
                           {10000, "10000", "00"},
                           {12345, "12345", "45"}}) {
    LocalTime time;
    time.year = each.year;
    EXPECT_EQ(calendarText(time, "%Y"), each.four);
    EXPECT_EQ(calendarText(time, "%y"), each.two);
  }
}

TEST(CalendarFormat, ShowsOffsetsInWholeMinutesTowardsZero) {
  struct Case {
    std::int32_t seconds;
    const char* text;
  };
  for (const Case& each : {Case{0, "+0000"},
                           {20700, "+0545"},
                           {-12600, "-0330"},
                           {-1800, "-0030"},
                           {50400, "+1400"},
                           {-43200, "-1200"},
                           {3208, "+0053"},
                           {-3208, "-0053"},
                           {59, "+0000"},
                           {-59, "-0000"}}) {
    LocalTime time;
    time.secondsFromGMT = each.seconds;
    EXPECT_EQ(calendarText(time, "%z"), each.text) << each.seconds;
  }
}

}  // namespace
}  // namespace wenlolib::tests
