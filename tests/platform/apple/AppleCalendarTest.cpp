#include "platform/apple/AppleServices.h"

#include <limits>

#include "platform/apple/StubTest.h"

namespace wenlolib::tests {
namespace {

Instant at(double seconds) {
  return Instant(Seconds(seconds));
}

class AppleCalendar : public PortTest {
 protected:
  platform::apple::AppleCalendar calendar;
};

TEST_F(AppleCalendar, ShowsTheDefaultTimeZone) {
  stubs::useTimeZone(20700);
  const auto time = calendar.localTime(at(1710461107.9));  // 15 March 2024, 00:05:07 GMT
  ASSERT_TRUE(time);
  EXPECT_EQ(time->year, 2024);
  EXPECT_EQ(time->month, 3);
  EXPECT_EQ(time->day, 15);
  EXPECT_EQ(time->hour, 5);
  EXPECT_EQ(time->minute, 50);
  EXPECT_EQ(time->second, 7);
  EXPECT_EQ(time->secondsFromGMT, 20700);
}

TEST_F(AppleCalendar, RoundsDownBefore1970) {
  const auto time = calendar.localTime(at(-0.5));
  ASSERT_TRUE(time);
  EXPECT_EQ(time->year, 1969);
  EXPECT_EQ(time->second, 59);
}

TEST_F(AppleCalendar, DoesNotShowWhatIsNotADate) {
  for (const double seconds : {std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity(), -1e300, 1e13}) {
    EXPECT_EQ(calendar.localTime(at(seconds)).has_value(), false) << seconds;
  }
}

TEST_F(AppleCalendar, LeavesDirectivesToTheSystemWhereItKnowsThem) {
  EXPECT_EQ(calendar.formatted(at(0), "%%"), "by the system: %");
  world.offersCalendarFormat = false;
  stubs::useTimeZone(-12600);
  EXPECT_EQ(calendar.formatted(at(1710461107), "%Y-%m-%dT%H:%M:%S%z"), "2024-03-14T20:35:07-0330");
  EXPECT_EQ(calendar.formatted(at(1e300), "%Y"), std::nullopt);
}

}  // namespace
}  // namespace wenlolib::tests
