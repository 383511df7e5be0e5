// The support decision, asked through the entry points: what the platform is asked, and in which
// order.
#include <gtest/gtest.h>

#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

class Support : public InstalledTest {
 protected:
  void setPreferences(double days, const Value& agreement) {
    Dictionary preferences = agreedPreferences(world.clock.time, days);
    preferences.insert_or_assign("LatestSelectedAgreement", agreement);
    world.propertyLists.add(preferencePath, preferences);
  }

  Journal::Lines questions() const {
    Journal::Lines lines = world.journal.lines();
    std::erase_if(lines, [](const std::string& line) { return line.starts_with("user."); });
    return lines;
  }
};

const Journal::Lines osQuestions = {"system.gestalt sys1", "system.gestalt sys2",
                                    "system.gestalt sys3"};

Journal::Lines operator+(Journal::Lines left, const Journal::Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const Journal::Lines reading = {"files.kindAt " + preferencePath,
                                "propertyLists.read " + preferencePath};

TEST_F(Support, WorkedExamplesOfTheDecision) {
  EXPECT_TRUE(WENLOLIB::isSupported(1));
  setPreferences(100, false);
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  setPreferences(100, "YES");
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  setPreferences(2000, true);
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  EXPECT_TRUE(WENLOLIB::isSupportedPlm(1));
  world.files.remove(preferencePath);
  EXPECT_TRUE(WENLOLIB::isSupported(2));
  EXPECT_TRUE(WENLOLIB::isSupported(18));
  EXPECT_FALSE(WENLOLIB::isSupported(3));
  EXPECT_FALSE(WENLOLIB::isSupported(17));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(2));
}

TEST_F(Support, FromTheUpperBoundOnTheListDecides) {
  world.propertyLists.add(versionListPath, {{"1003.1", "10.16.0"}, {"1003.0", "10.17.0"}});
  world.system.setVersion(10, 16, 99);
  EXPECT_TRUE(WENLOLIB::isSupported(1));
  world.system.setVersion(10, 17, 0);
  EXPECT_FALSE(WENLOLIB::isSupported(1));    // the running library is 3.1
  EXPECT_TRUE(WENLOLIB::isSupportedPlm(1));  // the installed one is 3.0
  world.system.setVersion(10, 17, 1);
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(1));
  world.propertyLists.add(versionListPath, {{"1003.1", "10.18.0"}});
  EXPECT_TRUE(WENLOLIB::isSupported(1));
}

TEST_F(Support, FromTheUpperBoundOnUnknownLibrariesAreRefused) {
  world.propertyLists.add(versionListPath, {{"1003.1", "99.0.0"}, {"1003.0", "99.0.0"}});
  world.system.setVersion(10, 17, 0);
  EXPECT_TRUE(WENLOLIB::isSupported(2));
  EXPECT_TRUE(WENLOLIB::isSupportedPlm(2));
  world.bundles.own = Dictionary{{"CFBundleVersion", "3.1.0"}};
  world.bundles.informationByPath[installedBundle] = {{"CFBundleShortVersionString", "3.0.1"}};
  EXPECT_FALSE(WENLOLIB::isSupported(2));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(2));
  world.bundles.own = std::nullopt;
  world.bundles.informationByPath.clear();
  EXPECT_FALSE(WENLOLIB::isSupported(2));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(2));
}

TEST_F(Support, AFolderNamedLikeThePreferenceFileIsNotAFile) {
  world.files.remove(preferencePath);
  world.files.addFolder(preferencePath);
  EXPECT_FALSE(WENLOLIB::isSupported(0));
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(0));
  EXPECT_EQ(world.journal.count("propertyLists.read"), 0U);
}

TEST_F(Support, ExactlyThePeriodAgoIsTooLongAgo) {
  world.propertyLists.add(preferencePath,
                          {{"InstalledDate", world.clock.time - Seconds(124416000.0)},
                           {"LatestSelectedAgreement", true}});
  EXPECT_FALSE(WENLOLIB::isSupported(0));
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  world.clock.time -= Seconds(0.25);
  EXPECT_TRUE(WENLOLIB::isSupported(0));
  EXPECT_TRUE(WENLOLIB::isSupported(1));
}

TEST_F(Support, ModeZeroReadsTheFileTwice) {
  EXPECT_TRUE(WENLOLIB::isSupported(0));
  EXPECT_EQ(questions(), osQuestions + reading + Journal::Lines{"clock.now"} + reading);
}

TEST_F(Support, ModeZeroNeedsBothReadings) {
  for (const int nth : {1, 2}) {
    world.faults.fail("propertyLists.read", nth);
    EXPECT_FALSE(WENLOLIB::isSupported(0)) << nth;
    world.faults.forgive();
  }
  world.faults.fail("files.kindAt", 2);
  EXPECT_FALSE(WENLOLIB::isSupported(0));
}

TEST_F(Support, ModeOneReadsTheFileOnce) {
  EXPECT_TRUE(WENLOLIB::isSupported(1));
  EXPECT_EQ(questions(), osQuestions + reading + Journal::Lines{"clock.now"});
}

TEST_F(Support, ModeTwoAndRefusedModesReadNoFile) {
  for (const std::uint32_t option : {2U, 3U, 15U}) {
    world.journal.clear();
    EXPECT_EQ(WENLOLIB::isSupported(option), option == 2);
    EXPECT_EQ(world.journal.lines(), osQuestions);
  }
}

TEST_F(Support, PrinterLogsReadTheFileOnceWhateverTheOption) {
  for (const std::uint32_t option : {0U, 1U, 2U, 3U, 0xFFFFFFFFU}) {
    world.journal.clear();
    EXPECT_TRUE(WENLOLIB::isSupportedPlm(option));
    EXPECT_EQ(questions(), osQuestions + reading + Journal::Lines{"clock.now"});
  }
}

TEST_F(Support, AnUnknownOSAsksNothingFurther) {
  world.faults.failAlways("system.gestalt");
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  EXPECT_FALSE(WENLOLIB::isSupported(2));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(1));
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"system.gestalt sys1", "system.gestalt sys1", "system.gestalt sys1"}));
}

TEST_F(Support, BelowTheBoundNeitherBundleNorListIsLookedAt) {
  world.system.setVersion(10, 16, 99);
  EXPECT_TRUE(WENLOLIB::isSupported(1));
  EXPECT_TRUE(WENLOLIB::isSupportedPlm(1));
  EXPECT_EQ(world.journal.count("bundles."), 0U);
  EXPECT_EQ(world.journal.count("propertyLists.read " + versionListPath), 0U);
}

TEST_F(Support, AtTheBoundTheBundleIsAskedThenTheListThenTheOSAgain) {
  world.propertyLists.add(versionListPath, {{"1003.1", "10.17.0"}, {"1003.0", "10.17.0"}});
  world.system.setVersion(10, 17, 0);
  const Journal::Lines list = {"propertyLists.read " + versionListPath};
  const Journal::Lines running = {"bundles.ownInformation"};
  const Journal::Lines installed = {"bundles.informationAt " + installedBundle};
  const Journal::Lines clock = {"clock.now"};
  EXPECT_TRUE(WENLOLIB::isSupported(2));
  EXPECT_EQ(questions(), osQuestions + running + list + osQuestions);
  world.journal.clear();
  EXPECT_TRUE(WENLOLIB::isSupportedPlm(2));
  EXPECT_EQ(questions(), osQuestions + installed + list + osQuestions + reading + clock);
}

TEST_F(Support, NoDecisionWritesOrChangesAnything) {
  const auto before = world.files.all();
  for (std::uint32_t option = 0; option < 16; ++option) {
    static_cast<void>(WENLOLIB::isSupported(option));
    static_cast<void>(WENLOLIB::isSupportedPlm(option));
  }
  EXPECT_EQ(world.files.all(), before);
  EXPECT_EQ(world.journal.count("files.writeAtomically"), 0U);
}

}  // namespace
}  // namespace wenlolib::tests
