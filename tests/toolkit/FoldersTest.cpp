#include <gtest/gtest.h>

#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using Toolkit = CommonTooWenlolib;

class Folders : public PlatformTest {};

TEST_F(Folders, LieInTheContainerThatTheLookupAnswers) {
  world.user.container = {true, "/C"};
  EXPECT_EQ(Toolkit::groupContainerDirPath(), Text("/C"));
  EXPECT_EQ(Toolkit::appSupportDirPath(), Text("/C/Library/Application Support/QMR"));
  EXPECT_EQ(Toolkit::prefDirPath(), Text("/C/Library/Preferences/QMR"));
  EXPECT_EQ(Toolkit::cacheDirPath(), Text("/C/Library/Caches/QMR"));
  EXPECT_EQ(Toolkit::pliDirPath(1), Text("/C/Library/Application Support/QMR/PLM"));
  EXPECT_EQ(Toolkit::almDirPath(), Text("/C/Library/Application Support/QMR/ALM"));
  EXPECT_EQ(Toolkit::confDirPath(), Text("/C/Library/Application Support/QMR/Config"));
  EXPECT_EQ(Toolkit::WENLOLIBDirPath(1), Text("/C/Library/Application Support/QMR/PlugIns"));
}

TEST_F(Folders, TheGroupIdentifierIsFixed) {
  EXPECT_EQ(Toolkit::groupIdentifier(), Text("K7MW2PL9QD.QX.common"));
}

TEST_F(Folders, ALookupThatIsOfferedIsAskedAloneAndByIdentifier) {
  world.user.container = {true, "/C"};
  static_cast<void>(Toolkit::groupContainerDirPath());
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"user.groupContainer K7MW2PL9QD.QX.common"});
}

TEST_F(Folders, TheLoginNameServesOnlyWhereNoLookupIsOffered) {
  world.user.container = {false, std::nullopt};
  EXPECT_EQ(Toolkit::groupContainerDirPath(),
            Text("/Users/ada/Library/Group Containers/K7MW2PL9QD.QX.common"));
}

void expectNoFolderInTheContainer() {
  EXPECT_EQ(Toolkit::groupContainerDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::appSupportDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::prefDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::cacheDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::pliDirPath(1), std::nullopt);
  EXPECT_EQ(Toolkit::almDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::confDirPath(), std::nullopt);
  EXPECT_EQ(Toolkit::WENLOLIBDirPath(1), std::nullopt);
  EXPECT_EQ(Toolkit::WENLOLIBDirPath(0), std::nullopt);
  EXPECT_EQ(Toolkit::pliDirPath(0), Text("/Users/Shared/Orvan Quillmere/Logs"));
}

TEST_F(Folders, ALookupThatFindsNoneLeavesNullAndOnlyTheSharedLogs) {
  world.user.container = {true, std::nullopt};
  expectNoFolderInTheContainer();
  EXPECT_EQ(world.journal.count("user.loginName"), 0U);
}

TEST_F(Folders, WithoutLookupAndLoginNameOnlyTheSharedLogsAreKnown) {
  world.user.login = std::nullopt;
  expectNoFolderInTheContainer();
}

TEST_F(Folders, TheSharedLogsAskNothing) {
  EXPECT_EQ(Toolkit::pliDirPath(0), Text("/Users/Shared/Orvan Quillmere/Logs"));
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(Folders, AnyFlagButZeroIsTrueForPrinterLogsAndOnlyOneForPlugIns) {
  world.user.container = {true, "/C"};
  for (const int flag : {1, 2, 128, 255}) {
    EXPECT_EQ(Toolkit::pliDirPath(static_cast<std::uint8_t>(flag)),
              Text("/C/Library/Application Support/QMR/PLM"));
  }
  for (const int flag : {0, 2, 128, 255}) {
    EXPECT_EQ(Toolkit::WENLOLIBDirPath(static_cast<std::uint8_t>(flag)),
              Text("/C/Library/Application Support/QMR/Frameworks"));
  }
}

TEST_F(Folders, PartsAreJoinedWithExactlyOneSlash) {
  for (const char* path : {"/C", "/C/", "/C//"}) {
    world.user.container = {true, path};
    EXPECT_EQ(Toolkit::cacheDirPath(), Text("/C/Library/Caches/QMR")) << path;
  }
  world.user.container = {true, "/"};
  EXPECT_EQ(Toolkit::cacheDirPath(), Text("/Library/Caches/QMR"));
}

TEST_F(Folders, PreferenceFilesLieInTheUsersLibraryFolder) {
  EXPECT_EQ(Toolkit::printerListPath(),
            Text("/Users/ada/Library/Preferences/"
                 "com.orvan.printing.Quillmere.TargetPrinterList.plist"));
  EXPECT_EQ(Toolkit::surveyInfoPath(),
            Text("/Users/ada/Library/Preferences/com.orvan.printing.Quillmere.SurveyInfo.plist"));
}

TEST_F(Folders, WithoutALibraryFolderThereAreNoPreferenceFiles) {
  world.user.library = std::nullopt;
  EXPECT_EQ(Toolkit::printerListPath(), std::nullopt);
  EXPECT_EQ(Toolkit::surveyInfoPath(), std::nullopt);
  EXPECT_EQ(Toolkit::printerListDictionary(), std::nullopt);
  EXPECT_EQ(Toolkit::surveyInfoDictionary(), std::nullopt);
  EXPECT_EQ(world.journal.count("propertyLists.read"), 0U);
}

TEST_F(Folders, PreferenceFilesAreReadAsDictionaries) {
  const Dictionary printers = {{"a", 1}};
  const Dictionary survey = {{"b", "x"}};
  EXPECT_EQ(Toolkit::printerListDictionary(), std::nullopt);
  world.propertyLists.add(*Toolkit::printerListPath(), printers);
  world.propertyLists.add(*Toolkit::surveyInfoPath(), survey);
  EXPECT_EQ(Toolkit::printerListDictionary(), printers);
  EXPECT_EQ(Toolkit::surveyInfoDictionary(), survey);
}

TEST_F(Folders, APreferenceFileWithoutADictionaryAtItsRootIsNull) {
  world.files.addFile(*Toolkit::printerListPath(), "<plist><array/></plist>");
  world.files.addFolder(*Toolkit::surveyInfoPath());
  EXPECT_EQ(Toolkit::printerListDictionary(), std::nullopt);
  EXPECT_EQ(Toolkit::surveyInfoDictionary(), std::nullopt);
}

}  // namespace
}  // namespace wenlolib::tests
