#include "record/HeaderValues.h"

#include <gtest/gtest.h>

#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

const Dictionary withoutVersion = {{"CFBundleVersion", "7.7.7"}};

Dictionary version(const Value& value) {
  return {{"CFBundleShortVersionString", value}};
}

TEST(TwoComponents, AreCutBeforeTheSecondPoint) {
  const struct {
    const char* version;
    const char* result;
  } table[] = {
      {"1.2.3", "1.2"},
      {"10.4.11", "10.4"},
      {"2.0.0.1", "2.0"},
      {"1.2", "1.2"},
      {"1.2b3", "1.2b3"},
      {"1.2.", "1.2"},
      {"1..2", "1."},
      {".5", ".5"},
      {"1", ""},
      {"1.", ""},
      {"", ""},
      {".", ""},
      {"..", "."},
      {"a.b.c", "a.b"},
      {"\xC3\xA9.\xC3\xA9.x", "\xC3\xA9.\xC3\xA9"},
  };
  for (const auto& row : table) EXPECT_EQ(twoComponents(row.version), row.result) << row.version;
}

class ClientVersion : public PlatformTest {
 protected:
  std::shared_ptr<WENLOLIB> record = WENLOLIB::init();
};

TEST_F(ClientVersion, IsTheHostBundles) {
  world.bundles.informationByPath[hostBundle] = version("2.1.4");
  world.bundles.informationByPath[installedBundle] = version("3.0.1");
  EXPECT_EQ(record->getCliantVersion(), "2.1");
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"bundles.informationAt " + hostBundle});
}

TEST_F(ClientVersion, WithoutAHostBundleTheInstalledLibraryStandsIn) {
  world.bundles.informationByPath[installedBundle] = version("3.0.1");
  EXPECT_EQ(record->getCliantVersion(), "3.0");
  EXPECT_EQ(world.journal.lines(), (Journal::Lines{"bundles.informationAt " + hostBundle,
                                                   "bundles.informationAt " + installedBundle}));
}

TEST_F(ClientVersion, AHostBundleWithoutTheKeyGivesNothingWhateverTheLibraryHolds) {
  world.bundles.informationByPath[hostBundle] = withoutVersion;
  world.bundles.informationByPath[installedBundle] = version("3.0.1");
  EXPECT_EQ(record->getCliantVersion(), "");
  world.bundles.informationByPath[hostBundle] = {};
  EXPECT_EQ(record->getCliantVersion(), "");
  EXPECT_EQ(world.journal.count("bundles.informationAt " + installedBundle), 0U);
}

TEST_F(ClientVersion, WithoutAnyBundleItIsEmpty) {
  EXPECT_EQ(record->getCliantVersion(), "");
}

TEST_F(ClientVersion, AValueThatIsNotTextCountsAsAbsent) {
  for (const Value& value : {Value(2.1), Value(21), Value(true), Value("\xFF.1")}) {
    world.bundles.informationByPath[hostBundle] = version(value);
    world.bundles.own = version(value);
    EXPECT_EQ(record->getCliantVersion(), "");
    EXPECT_EQ(record->getCliantVersionforALM(), "");
  }
}

TEST_F(ClientVersion, TheLibrarysOwnComesFromTheBundleThatItWasLoadedFrom) {
  world.bundles.informationByPath[hostBundle] = version("2.1.4");
  world.bundles.own = version("3.1.0");
  EXPECT_EQ(record->getCliantVersionforALM(), "3.1");
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"bundles.ownInformation"});
  world.bundles.own = withoutVersion;
  EXPECT_EQ(record->getCliantVersionforALM(), "");
  world.bundles.own = std::nullopt;
  EXPECT_EQ(record->getCliantVersionforALM(), "");
}

TEST_F(ClientVersion, TheOSVersionIsMarked) {
  world.system.setVersion(10, 9, 5);
  EXPECT_EQ(record->getOSVersion(), "M.10.9.5");
  world.system.setVersion(10, 13, 6);
  EXPECT_EQ(record->getOSVersion(), "M.10.13.6");
}

TEST_F(ClientVersion, AnUnknownOSVersionIsEmptyAndNeverTheMarkAlone) {
  for (const platform::Selector missing :
       {platform::Selector::majorVersion, platform::Selector::minorVersion,
        platform::Selector::bugFixVersion}) {
    world.system.setVersion(10, 9, 5);
    world.system.answers.erase(missing);
    EXPECT_EQ(record->getOSVersion(), "");
  }
}

}  // namespace
}  // namespace wenlolib::tests
