// The path of a record's file.
#include <gtest/gtest.h>

#include "record/MonthFiles.h"
#include "support/PlatformTest.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

class RecordPath : public InstalledTest {};

TEST_F(RecordPath, IsOneForEachApplication) {
  EXPECT_TRUE(applicationRecord("c", "A")->writeAppInfo());
  EXPECT_TRUE(applicationRecord("c", "B")->writeAppInfo());
  EXPECT_TRUE(world.files.at(monthFile("2403", "A")));
  EXPECT_TRUE(world.files.at(monthFile("2403", "B")));
}

TEST_F(RecordPath, TheMonthIsTheOneOfTheLocalZoneOnEveryOS) {
  world.clock.time = dateOf(2024, 12, 31, 23, 30);
  for (const std::int32_t minor : {8, 9, 15}) {
    world.system.setVersion(10, minor, 0);
    world.calendar.secondsFromGMT = 3600;
    EXPECT_TRUE(applicationRecord()->writeAppInfo());
    EXPECT_TRUE(world.files.at(monthFile("2501"))) << minor;
    world.calendar.secondsFromGMT = -3600;
    EXPECT_TRUE(applicationRecord()->writeAppInfo());
    EXPECT_TRUE(world.files.at(monthFile("2412"))) << minor;
    world.files.remove(monthFile("2501"));
    world.files.remove(monthFile("2412"));
  }
}

TEST_F(RecordPath, TheMonthIsMadeByDirectivesOnlyBelow109) {
  const struct {
    std::int32_t minor, bugFix;
    std::size_t byDirectives;
  } table[] = {{8, 99, 1}, {9, 0, 0}, {15, 7, 0}};
  for (const auto& row : table) {
    world.system.setVersion(10, row.minor, row.bugFix);
    world.journal.clear();
    EXPECT_TRUE(applicationRecord()->writeAppInfo());
    EXPECT_EQ(world.journal.count("calendar.formatted %y%m"), row.byDirectives) << row.minor;
  }
  world.system.answers.clear();
  world.journal.clear();
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  EXPECT_EQ(world.journal.count("calendar.formatted"), 0U);
  EXPECT_TRUE(world.files.at(monthFile("2403")));
}

TEST_F(RecordPath, TheNameGoesInAsItIs) {
  world.files.addFolder(applicationFolder + "/Quillmere_Log_sub");
  EXPECT_TRUE(applicationRecord("c", "sub/App")->writeAppInfo());
  EXPECT_TRUE(world.files.at(applicationFolder + "/Quillmere_Log_sub/App_2403.ALM"));
  world.files.addFolder(printerLogFolder + "/sub");
  EXPECT_TRUE(WENLOLIB::initWithContents("c", "sub/\xC3\xA9 %d %@")->writeAppInfo());
  EXPECT_TRUE(world.files.at(printerLogFolder + "/sub/\xC3\xA9 %d %@_1.PLM"));
}

TEST_F(RecordPath, ASubFolderThatIsMissingIsNotMade) {
  const auto before = world.files.all();
  EXPECT_FALSE(applicationRecord("c", "sub/App")->writeAppInfo());
  EXPECT_FALSE(WENLOLIB::initWithContents("c", "sub/App")->writeAppInfo());
  EXPECT_EQ(world.files.all(), before);
}

TEST_F(RecordPath, ANameWithANulInItFindsNoFile) {
  const auto before = world.files.all();
  EXPECT_FALSE(applicationRecord("c", "A\0B"s)->writeAppInfo());
  EXPECT_FALSE(WENLOLIB::initWithContents("c", "A\0B"s)->writeAppInfo());
  EXPECT_EQ(world.files.all(), before);
}

TEST_F(RecordPath, AMissingFolderGivesFalseAndIsNotMade) {
  world.files.remove(applicationFolder);
  world.files.remove(printerLogFolder);
  const auto before = world.files.all();
  EXPECT_FALSE(applicationRecord()->writeAppInfo());
  EXPECT_FALSE(WENLOLIB::initWithContents("c", "App")->writeAppInfo());
  EXPECT_EQ(world.files.all(), before);
  EXPECT_EQ(world.journal.count("files.createFolder"), 0U);
}

TEST_F(RecordPath, AnUnknownFolderStandsAsNullAndTheWriteFails) {
  world.user.container = {true, std::nullopt};
  const auto before = world.files.all();
  EXPECT_FALSE(applicationRecord()->writeAppInfo());
  EXPECT_FALSE(WENLOLIB::initWithContents("c", "App")->writeAppInfo());
  EXPECT_EQ(world.files.all(), before);
  EXPECT_EQ(world.journal.linesOf("files.writeAtomically"),
            (Journal::Lines{"files.writeAtomically (null)/Quillmere_Log_App_2403.ALM replacing",
                            "files.writeAtomically (null)/App_1.PLM asNew"}));
}

TEST_F(RecordPath, AMonthThatCannotBeShownStandsAsNull) {
  world.faults.failAlways("calendar.localTime");
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  EXPECT_TRUE(world.files.at(monthFile("(null)")));
}

TEST_F(RecordPath, AMonthThatDirectivesCannotShowStandsAsNullToo) {
  world.system.setVersion(10, 8, 5);
  world.faults.failAlways("calendar.formatted");
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  EXPECT_TRUE(world.files.at(monthFile("(null)")));
}

TEST_F(RecordPath, ThePathIsChosenBeforeTheDocumentIsMade) {
  EXPECT_TRUE(applicationRecord()->writeAppInfo());
  const Journal::Lines lines = world.journal.lines();
  EXPECT_EQ(lines.front(), "user.groupContainer K7MW2PL9QD.QX.common");
  const std::string file = monthFile("2403");
  const Journal::Lines end = {"xml.serialised", "files.writeAtomically " + file + " replacing",
                              "files.kindAt " + file, "files.setPermissions " + file + " 0666"};
  ASSERT_GT(lines.size(), end.size());
  EXPECT_EQ(Journal::Lines(lines.end() - static_cast<std::ptrdiff_t>(end.size()), lines.end()),
            end);
}

}  // namespace
}  // namespace wenlolib::tests
