#include <gtest/gtest.h>

#include "support/ExpectedDocument.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

const std::string month = applicationFolder + "/Quillmere_Log_App_2403.ALM";
const std::string firstLog = printerLogFolder + "/App_1.PLM";

class EntryPoints : public InstalledTest {
 protected:
  static bool application(const Text& contents, const Text& name, std::uint32_t option = 1) {
    return WENLOLIB::writeAppInfoWithContents(contents, name, option);
  }
  static bool printerLog(const Text& contents, const Text& name,
                         const std::optional<Dictionary>& otherInfo = {},
                         std::uint32_t option = 1) {
    return WENLOLIB::writePrinterLogInfoWithContents(contents, name, option, otherInfo);
  }

  /// What the platform is asked while `work` runs.
  template <class Work>
  Journal::Lines askedBy(Work work) {
    world.journal.clear();
    static_cast<void>(work());
    return world.journal.lines();
  }
};

TEST_F(EntryPoints, ApplicationUsageIsRecorded) {
  EXPECT_TRUE(application("contents", "App"));
  ExpectedDocument expected;
  expected.locale = "fr_FR";
  expected.contents = "contents";
  EXPECT_EQ(world.files.bytesAt(month), expected.text());
}

TEST_F(EntryPoints, PrinterLogsAreRecordedWithTheirIdentity) {
  EXPECT_TRUE(printerLog("contents", "App",
                         Dictionary{{"DeviceID", "d"}, {"SN", "s"}, {"ROMVER", "r"}}, 0));
  ExpectedDocument expected;
  expected.wrapper = "OrvanQXPrinter";
  expected.version = "2.1";
  expected.printer = {"d", "s", "r"};
  expected.contents = "contents";
  EXPECT_EQ(world.files.bytesAt(firstLog), expected.text());
}

TEST_F(EntryPoints, PrinterLogsOfTheNewTagTypeCarryNoIdentity) {
  EXPECT_TRUE(printerLog("contents", "App", Dictionary{{"SN", "s"}, {"NEWTAGTYPE", "YES"}}));
  EXPECT_EQ(world.files.bytesAt(firstLog).substr(0, 20), "<OrvanQX2Application");
}

TEST_F(EntryPoints, ANullIdentityLeavesThePrinterValuesEmpty) {
  EXPECT_TRUE(printerLog("contents", "App", std::nullopt));
  const std::string document = world.files.bytesAt(firstLog);
  EXPECT_EQ(elementIn(document, "DeviceID"), "");
  EXPECT_EQ(elementIn(document, "SN"), "");
  EXPECT_EQ(elementIn(document, "ROMVER"), "");
  EXPECT_EQ(contentsOf(document), "contents");
}

TEST_F(EntryPoints, ARefusalComesFirstWhateverTheArgumentsAre) {
  const auto before = world.files.all();
  for (const Text& contents : {Text("contents"), Text(), Text("\xFF")}) {
    for (const Text& name : {Text("App"), Text()}) {
      EXPECT_FALSE(application(contents, name, 3));
    }
  }
  world.files.remove(preferencePath);
  EXPECT_FALSE(printerLog(std::nullopt, std::nullopt));
  EXPECT_FALSE(printerLog("contents", "App"));
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 100));
  EXPECT_EQ(world.files.all().size(), before.size());
}

TEST_F(EntryPoints, ARefusedRecordAsksNothingBeyondTheDecision) {
  EXPECT_EQ(askedBy([&] { return application("contents", "App", 3); }),
            askedBy([] { return WENLOLIB::isSupported(3); }));
  world.propertyLists.add(preferencePath, agreedPreferences(world.clock.time, 5000));
  for (const std::uint32_t option : {0U, 1U}) {
    EXPECT_EQ(askedBy([&] { return application("contents", "App", option); }),
              askedBy([&] { return WENLOLIB::isSupported(option); }));
  }
  EXPECT_EQ(askedBy([&] { return printerLog("contents", "App"); }),
            askedBy([] { return WENLOLIB::isSupportedPlm(1); }));
}

TEST_F(EntryPoints, NullContentsOrNameAreRefusedAfterTheDecisionAlone) {
  const Journal::Lines decision = askedBy([] { return WENLOLIB::isSupported(1); });
  const Journal::Lines logDecision = askedBy([] { return WENLOLIB::isSupportedPlm(1); });
  const struct {
    Text contents, name;
  } table[] = {{std::nullopt, "App"},
               {"contents", std::nullopt},
               {std::nullopt, std::nullopt},
               {"\xFF", "App"},
               {"contents", "\xFF"}};
  for (const auto& row : table) {
    EXPECT_FALSE(application(row.contents, row.name));
    EXPECT_FALSE(printerLog(row.contents, row.name));
    EXPECT_EQ(askedBy([&] { return application(row.contents, row.name); }), decision);
    EXPECT_EQ(askedBy([&] { return printerLog(row.contents, row.name); }), logDecision);
  }
}

TEST_F(EntryPoints, EmptyContentsAndNamePass) {
  EXPECT_TRUE(application("", ""));
  EXPECT_TRUE(printerLog("", ""));
  EXPECT_TRUE(world.files.at(applicationFolder + "/Quillmere_Log__2403.ALM"));
  EXPECT_TRUE(world.files.at(printerLogFolder + "/_1.PLM"));
}

TEST_F(EntryPoints, ModeTwoNeedsNoPreferences) {
  world.files.remove(preferencePath);
  EXPECT_TRUE(application("contents", "App", 2));
  EXPECT_EQ(elementIn(world.files.bytesAt(month), "Locale"), "en_US");
}

TEST_F(EntryPoints, ARefusedDocumentAnswersTrueAndWritesNothing) {
  world.faults.failAlways("xml.serialised");
  const auto before = world.files.all();
  EXPECT_TRUE(application("contents", "App"));
  EXPECT_TRUE(printerLog("contents", "App"));
  EXPECT_EQ(world.files.all(), before);
}

TEST_F(EntryPoints, NothingIsKeptBetweenCalls) {
  EXPECT_TRUE(application("first", "App"));
  world.bundles.own = Dictionary{{"CFBundleShortVersionString", "7.8.9"}};
  world.user.localeSetting = "de_DE";
  world.propertyLists.add(identifierPath, {{"WENLIBUUID", "{OTHER}"}});
  EXPECT_TRUE(application("second", "App", 2));
  const std::string document = world.files.bytesAt(month);
  EXPECT_EQ(elementIn(document, "Version"), "7.8");
  EXPECT_EQ(elementIn(document, "Locale"), "de_DE");
  EXPECT_EQ(elementIn(document, "ID"), "{OTHER}");
  EXPECT_EQ(contentsOf(document), "second");
}

TEST_F(EntryPoints, OneWholeRecordInOrder) {
  world.user.container = {true, container};
  const Journal::Lines group = {"user.groupContainer K7MW2PL9QD.QX.common"};
  const Journal::Lines os = {"system.gestalt sys1", "system.gestalt sys2", "system.gestalt sys3"};
  const Journal::Lines steps[] = {
      // the decision
      os,
      group,
      {"files.kindAt " + preferencePath, "propertyLists.read " + preferencePath},
      {"clock.now"},
      // the target
      group,
      {"files.kindAt " + firstLog},
      // the document: date, payload, probes, checksum
      os,
      {"clock.now"},
      os,
      {"calendar.localTime", "digest.md5", "cipher.rc4"},
      {"bundles.informationAt " + hostBundle},
      os,
      group,
      {"files.kindAt " + preferencePath, "propertyLists.read " + preferencePath},
      group,
      {"propertyLists.read " + identifierPath},
      {"digest.md5", "xml.serialised"},
      // the file
      {"files.writeAtomically " + firstLog + " asNew", "files.kindAt " + firstLog,
       "files.setPermissions " + firstLog + " 0666"}};
  Journal::Lines expected;
  for (const Journal::Lines& step : steps)
    expected.insert(expected.end(), step.begin(), step.end());
  EXPECT_EQ(askedBy([&] { return printerLog("contents", "App"); }), expected);
}

TEST_F(EntryPoints, PrintNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_TRUE(application("contents", "App"));
  EXPECT_TRUE(printerLog("contents", "App"));
  EXPECT_FALSE(application("contents", "App", 3));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace wenlolib::tests
