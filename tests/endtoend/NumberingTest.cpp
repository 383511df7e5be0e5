// Which file a record goes to.
#include <filesystem>

#include "endtoend/KeptDocuments.h"
#include "endtoend/World.h"
#include "platform/posix/Environment.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

class Numbering : public WorldTest {
 protected:
  void occupy(int number) { writeFile(world.real(printerLog(number)), "occupied"); }

  std::string contentsAt(int number) {
    return contentsOf(readFile(world.real(printerLog(number))));
  }

  void keep(int number, const std::string& contents) {
    keepDocument(world.real(printerLog(number)), RecordKind::printer, 'R', contents);
  }
};

TEST_F(Numbering, BeginsAtOneAndGoesOn) {
  for (const char* contents : {"first", "second", "third"}) {
    ASSERT_TRUE(recordAs(RecordKind::printer, contents));
  }
  EXPECT_EQ(world.printerLogs(), (std::vector<std::string>{"App_1.PLM", "App_2.PLM", "App_3.PLM"}));
  EXPECT_EQ(contentsAt(1), "first");
  EXPECT_EQ(contentsAt(3), "third");
  keep(3, "third");
}

TEST_F(Numbering, FillsTheLowestGap) {
  for (const int number : {1, 2, 4, 6}) occupy(number);
  ASSERT_TRUE(recordAs(RecordKind::printer, "gap"));
  EXPECT_EQ(contentsAt(3), "gap");
  ASSERT_TRUE(recordAs(RecordKind::printer, "next gap"));
  EXPECT_EQ(contentsAt(5), "next gap");
  EXPECT_EQ(readFile(world.real(printerLog(2))), "occupied");
  keep(5, "next gap");
}

TEST_F(Numbering, AFolderCountsAsTaken) {
  std::filesystem::create_directory(world.real(printerLog(1)));
  ASSERT_TRUE(recordAs(RecordKind::printer, "beside a folder"));
  EXPECT_EQ(contentsAt(2), "beside a folder");
  EXPECT_TRUE(std::filesystem::is_empty(world.real(printerLog(1))));
}

TEST_F(Numbering, ADanglingLinkIsFreeAndReplaced) {
  occupy(1);
  std::filesystem::create_symlink("nowhere", world.real(printerLog(2)));
  ASSERT_TRUE(recordAs(RecordKind::printer, "in place of a link"));
  EXPECT_FALSE(std::filesystem::is_symlink(world.real(printerLog(2))));
  EXPECT_EQ(contentsAt(2), "in place of a link");
  EXPECT_EQ(world.printerLogs().size(), 2U);
}

TEST_F(Numbering, ALinkToAFileIsTaken) {
  occupy(9);
  std::filesystem::create_symlink("App_9.PLM", world.real(printerLog(1)));
  ASSERT_TRUE(recordAs(RecordKind::printer, "after a link"));
  EXPECT_EQ(contentsAt(2), "after a link");
  EXPECT_EQ(readFile(world.real(printerLog(9))), "occupied");
}

TEST_F(Numbering, WithAllTakenTheLastIsReplaced) {
  for (int number = 1; number <= 999; ++number) occupy(number);
  ASSERT_TRUE(recordAs(RecordKind::printer, "the last"));
  EXPECT_EQ(contentsAt(999), "the last");
  EXPECT_EQ(readFile(world.real(printerLog(998))), "occupied");
  EXPECT_EQ(world.printerLogs().size(), 999U);
  keep(999, "the last");
}

TEST_F(Numbering, WithAllTakenAndAFolderLastTheRecordFails) {
  for (int number = 1; number <= 998; ++number) occupy(number);
  std::filesystem::create_directory(world.real(printerLog(999)));
  const mode_t before = modeOf(world.real(printerLog(999)));
  EXPECT_FALSE(recordAs(RecordKind::printer, "nowhere to go"));
  EXPECT_EQ(world.printerLogs().size(), 999U);
  EXPECT_EQ(modeOf(world.real(printerLog(999))), before);
}

TEST_F(Numbering, ANameWithASlashLeadsIntoASubfolder) {
  std::filesystem::create_directory(world.real(printerLogFolder + "/sub"));
  ASSERT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("contents", "sub/App", 1, {}));
  EXPECT_EQ(namesIn(world.real(printerLogFolder + "/sub")), std::vector<std::string>{"App_1.PLM"});
}

class Months : public WorldTest {};

TEST_F(Months, ARecordReplacesTheOneOfTheSameMonthOnly) {
  const Zone zone("GMT0");
  const std::string november = world.real(applicationFolder + "/Quillmere_Log_App_2611.ALM");
  const std::string december = world.real(applicationFolder + "/Quillmere_Log_App_2612.ALM");
  world.writePreferences(agreedPreferences(dateOf(2026, 11, 1), 10));
  world.memory.clock.time = dateOf(2026, 11, 1);
  ASSERT_TRUE(recordAs(RecordKind::application, "the first of the month"));
  keepDocument(november, RecordKind::application, 'R', "the first of the month");
  world.memory.clock.time = dateOf(2026, 11, 30, 23, 59, 59.9);
  ASSERT_TRUE(recordAs(RecordKind::application, "the last of the month"));
  world.memory.clock.time = dateOf(2026, 12, 1);
  ASSERT_TRUE(recordAs(RecordKind::application, "the next month"));
  EXPECT_EQ(namesIn(world.real(applicationFolder)).size(), 2U);
  EXPECT_EQ(contentsOf(readFile(november)), "the last of the month");
  EXPECT_EQ(contentsOf(readFile(december)), "the next month");
  keepDocument(november, RecordKind::application, 'R', "the last of the month");
  keepDocument(december, RecordKind::application, 'R', "the next month");
}

TEST_F(Months, TheMonthIsThatOfTheLocalZone) {
  const Zone zone("EAST-9");
  world.memory.clock.time = dateOf(2024, 3, 31, 20);
  ASSERT_TRUE(recordAs(RecordKind::application, "already April"));
  EXPECT_EQ(namesIn(world.real(applicationFolder)),
            std::vector<std::string>{"Quillmere_Log_App_2404.ALM"});
}

TEST_F(Months, AFileIsReplacedAndNotWrittenInto) {
  ASSERT_TRUE(recordAs(RecordKind::application, "older"));
  keepDocument(world.real(marchFile), RecordKind::application, 'R', "older");
  std::filesystem::create_hard_link(world.real(marchFile), world.root / "second name");
  ASSERT_TRUE(recordAs(RecordKind::application, "newer"));
  EXPECT_EQ(contentsOf(readFile(world.root / "second name")), "older");
  EXPECT_EQ(contentsOf(readFile(world.real(marchFile))), "newer");
}

class Masks : public WorldTest, public testing::WithParamInterface<mode_t> {};

TEST_P(Masks, DoNotAffectPermissions) {
  {
    const Mask mask(GetParam());
    ASSERT_TRUE(recordAs(RecordKind::application, "contents"));
    ASSERT_TRUE(recordAs(RecordKind::printer, "contents"));
    EXPECT_EQ(Mask(0).previous(), GetParam());
  }
  EXPECT_EQ(modeOf(world.real(marchFile)), 0666U);
  EXPECT_EQ(modeOf(world.real(printerLog(1))), 0666U);
  EXPECT_EQ(modeOf(world.real(identifierPath)), 0666U);
}

INSTANTIATE_TEST_SUITE_P(All, Masks, testing::Values(0, 022, 077, 0777),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace wenlolib::tests
