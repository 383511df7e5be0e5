#include "record/Document.h"

#include <gtest/gtest.h>

#include "support/ExpectedDocument.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

TEST(DateFormat, PutsAColonBeforeTheLastTwoCharactersOfTheZone) {
  const struct {
    Text zone;
    const char* format;
  } table[] = {
      {"+0900", "%Y-%m-%dT%H:%M:%S+09:00"}, {"-0330", "%Y-%m-%dT%H:%M:%S-03:30"},
      {"00", "%Y-%m-%dT%H:%M:%S:00"},       {"0", "%Y-%m-%dT%H:%M:%S%z"},
      {"", "%Y-%m-%dT%H:%M:%S%z"},          {std::nullopt, "%Y-%m-%dT%H:%M:%S%z"},
  };
  for (const auto& row : table) EXPECT_EQ(dateFormat(row.zone), row.format);
}

class DocumentDate : public InstalledTest {
 protected:
  std::string date() {
    const auto record = WENLOLIB::initWithContents("contents", "App");
    EXPECT_TRUE(record->WENLOLIBCreateXMLDocument());
    EXPECT_TRUE(verifies(world.xml.seen));
    return elementIn(world.xml.seen, "Date");
  }
  bool madeByComponents() const { return world.journal.count("calendar.localTime") > 0; }
  bool madeByDirectives() const { return world.journal.count("calendar.formatted") > 0; }
};

TEST_F(DocumentDate, IsMadeByDirectivesBelow109AndByComponentsFromItOn) {
  const struct {
    std::int32_t minor, bugFix;
    bool components;
  } table[] = {{8, 0, false}, {8, 5, false}, {8, 99, false}, {9, 0, true},
               {9, 5, true},  {15, 7, true}, {17, 0, true}};
  for (const auto& row : table) {
    world.system.setVersion(10, row.minor, row.bugFix);
    world.journal.clear();
    EXPECT_EQ(date(), "2024-03-15T09:05:07+09:00");
    EXPECT_EQ(madeByComponents(), row.components) << row.minor;
    EXPECT_EQ(madeByDirectives(), !row.components) << row.minor;
  }
}

TEST_F(DocumentDate, IsMadeByComponentsOnAnUnknownOS) {
  world.system.answers.clear();
  EXPECT_EQ(date(), "2024-03-15T09:05:07+09:00");
  EXPECT_TRUE(madeByComponents());
  EXPECT_FALSE(madeByDirectives());
}

TEST_F(DocumentDate, IsTheSameTextEitherWayInEveryZone) {
  const struct {
    std::int32_t offset;
    const char* date;
  } table[] = {
      {0, "2024-03-15T00:05:07+00:00"},     {-18000, "2024-03-14T19:05:07-05:00"},
      {19800, "2024-03-15T05:35:07+05:30"}, {-12600, "2024-03-14T20:35:07-03:30"},
      {20700, "2024-03-15T05:50:07+05:45"},
  };
  for (const auto& row : table) {
    for (const std::int32_t minor : {8, 15}) {
      world.system.setVersion(10, minor, 0);
      world.calendar.secondsFromGMT = row.offset;
      EXPECT_EQ(date(), row.date);
    }
  }
}

TEST_F(DocumentDate, BelowTheBoundTheZoneIsAskedForFirst) {
  world.system.setVersion(10, 8, 5);
  static_cast<void>(date());
  EXPECT_EQ(
      world.journal.linesOf("calendar."),
      (Journal::Lines{"calendar.formatted %z", "calendar.formatted %Y-%m-%dT%H:%M:%S+09:00"}));
}

TEST_F(DocumentDate, WithoutAZoneTextTheOffsetHasNoColon) {
  world.system.setVersion(10, 8, 5);
  world.faults.fail("calendar.formatted", 1);
  EXPECT_EQ(date(), "2024-03-15T09:05:07+0900");
}

TEST_F(DocumentDate, IsEmptyWhereTheCalendarCannotShowIt) {
  world.system.setVersion(10, 8, 5);
  world.faults.failAlways("calendar.formatted");
  EXPECT_EQ(date(), "");
  EXPECT_EQ(attributeIn(world.xml.seen, "C"), "R");
  EXPECT_EQ(elementIn(world.xml.seen, "PLI"), std::string(16, '0'));
}

TEST_F(DocumentDate, TheClockIsReadOnce) {
  for (const std::int32_t minor : {8, 15}) {
    world.system.setVersion(10, minor, 0);
    world.journal.clear();
    static_cast<void>(date());
    EXPECT_EQ(world.journal.count("clock.now"), 1U);
  }
}

}  // namespace
}  // namespace wenlolib::tests
