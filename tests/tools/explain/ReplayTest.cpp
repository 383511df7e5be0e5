// What a person types to replay a case, and the files of a replayed case.
#include "explain/Replay.h"

#include <gtest/gtest.h>

#include "explain/Explanation.h"
#include "platform/posix/Environment.h"
#include "platform/posix/TemporaryFolder.h"
#include "support/PlatformTest.h"

namespace wenlolib::tests {
namespace {

class ReplayedDate : public testing::Test {
  Zone zone_{"EAST-9"};
};

TEST_F(ReplayedDate, IsInLocalTimeUnlessAnOffsetIsGiven) {
  const std::pair<const char*, Instant> table[] = {
      {"2024-03-15", dateOf(2024, 3, 14, 15)},
      {"2024-03-15T09:05:07", dateOf(2024, 3, 15, 0, 5, 7)},
      {"2024-03-15 09:05:07", dateOf(2024, 3, 15, 0, 5, 7)},
      {"2024-03-15T09:05", dateOf(2024, 3, 15, 0, 5)},
      {"2024-03-15T09:05:07Z", dateOf(2024, 3, 15, 9, 5, 7)},
      {"2024-03-15T09:05:07+09:00", dateOf(2024, 3, 15, 0, 5, 7)},
      {"2024-03-15T09:05:07-0330", dateOf(2024, 3, 15, 12, 35, 7)},
      {"2024-02-29", dateOf(2024, 2, 28, 15)},
      {"2024-01-01T00:00:00Z", dateOf(2024, 1, 1)},
      {"2024-12-31T23:59:59Z", dateOf(2024, 12, 31, 23, 59, 59)},
  };
  for (const auto& [text, instant] : table) {
    const auto date = tools::dateFromText(text);
    ASSERT_TRUE(date) << text;
    EXPECT_EQ(date->time_since_epoch().count(), instant.time_since_epoch().count()) << text;
  }
}

TEST_F(ReplayedDate, OfAnotherFormIsRefused) {
  for (const char* text : {"",
                           "2024",
                           "2024-3-15",
                           "24-03-15",
                           "2024-02-30",
                           "2023-02-29",
                           "2024-13-01",
                           "2024-00-10",
                           "2024-03-00",
                           "2024-03-15T",
                           "2024-03-15T9:05",
                           "2024-03-15T24:00:00",
                           "2024-03-15x",
                           "2024-03-15T09:05:07+9",
                           "2024-03-15T09:05:07 Z",
                           "-2024-03-15",
                           "2024-+3-15",
                           "2024-03-15T-0:05",
                           "2024-03-15T09:05:07+24:00",
                           "tomorrow"}) {
    EXPECT_FALSE(tools::dateFromText(text)) << text;
  }
}

TEST(ReplayedOS, IsTwoOrThreeNumbersOrUnknown) {
  const auto version = tools::osVersionFromText("10.17.3");
  ASSERT_TRUE(version);
  EXPECT_TRUE(version->known);
  EXPECT_EQ(version->major, 10);
  EXPECT_EQ(version->minor, 17);
  EXPECT_EQ(version->bugFix, 3);
  EXPECT_EQ(tools::osVersionFromText("6.1").value().bugFix, 0);
  EXPECT_FALSE(tools::osVersionFromText("unknown").value().known);
  for (const char* text : {"", "10", "10.", "10.17.", "10.17.0.1", "10.17.x", "-1.2.3", " 10.17",
                           "100000.0", "10.100000", "10.0.100000"}) {
    EXPECT_FALSE(tools::osVersionFromText(text)) << text;
  }
}

TEST(ReplayedLibrary, IsTwoOrThreeNumbersOrUnknown) {
  for (const char* text : {"1.0.0", "3.1", "0.9", "1.100.0", "12345.0"}) {
    const auto version = tools::libraryVersionFromText(text);
    ASSERT_TRUE(version) << text;
    EXPECT_TRUE(version->known);
    EXPECT_EQ(version->text, text);
  }
  EXPECT_FALSE(tools::libraryVersionFromText("unknown").value().known);
  for (const char* text : {"", "1", "1.", "1.0.", "1.0.0.1", "1.0b", "v1.0", " 1.0", "-1.0"}) {
    EXPECT_FALSE(tools::libraryVersionFromText(text)) << text;
  }
}

TEST(ReplayedOS, MayHaveZerosAndNumbersOfFiveDigits) {
  const struct {
    const char* text;
    std::int32_t major, minor, bugFix;
  } table[] = {{"11.0", 11, 0, 0},   {"10.0", 10, 0, 0},
               {"11.0.0", 11, 0, 0}, {"11.0.1", 11, 0, 1},
               {"10.1.0", 10, 1, 0}, {"0.0", 0, 0, 0},
               {"0.1.0", 0, 1, 0},   {"99999.99999.99999", 99999, 99999, 99999}};
  for (const auto& each : table) {
    const auto version = tools::osVersionFromText(each.text);
    ASSERT_TRUE(version) << each.text;
    EXPECT_EQ(version->major, each.major) << each.text;
    EXPECT_EQ(version->minor, each.minor) << each.text;
    EXPECT_EQ(version->bugFix, each.bugFix) << each.text;
  }
}

using ReplayedFiles = InstalledTest;

TEST_F(ReplayedFiles, AreReadInPlaceOfTheInstalledOnes) {
  const TemporaryFolder folder;
  const std::string file = folder / "Pref.plist";
  writeFile(file,
            "<plist version=\"1.0\"><dict><key>InstalledDate</key><date>2024-03-01T00:00:00Z</date>"
            "<key>LatestSelectedAgreement</key><false/></dict></plist>");
  tools::ReplayedCase replayed;
  replayed.preferences = file;
  const tools::Replay replay(world.services, replayed);
  const platform::Substitute substitute(replay.services());
  const auto explanation = tools::explain(RecordKind::application, 1, {"", file, {}});
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "no_agreement");
  EXPECT_EQ(explanation.steps.back().source, file);
  EXPECT_TRUE(tools::explain(RecordKind::printerLog, 0).allowed());
}

}  // namespace
}  // namespace wenlolib::tests
