#include <gtest/gtest.h>

#include "support/PlatformTest.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using Toolkit = CommonTooWenlolib;

class SupportVersionList : public InstalledTest {
 protected:
  void list(const Dictionary& entries) { world.propertyLists.add(versionListPath, entries); }
  static std::int32_t answer(std::int32_t version = 30100) {
    return Toolkit::getandcompLocalSupportVersion(version);
  }
};

TEST_F(SupportVersionList, SupportsEveryOSUpToTheOneListed) {
  list({{"1003.1", "10.16.0"}});
  const struct {
    std::int32_t minor, bugFix, answer;
  } table[] = {{8, 5, 1}, {15, 7, 1}, {16, 0, 1}, {16, 1, -1}, {17, 0, -1}};
  for (const auto& row : table) {
    world.system.setVersion(10, row.minor, row.bugFix);
    EXPECT_EQ(answer(), row.answer) << row.minor << "." << row.bugFix;
  }
}

TEST_F(SupportVersionList, LooksVersionsUpWithoutTheirPatch) {
  list({{"1003.1", "10.16.0"}});
  EXPECT_EQ(answer(30100), 1);
  EXPECT_EQ(answer(30199), 1);
  EXPECT_EQ(answer(30200), -1);
  EXPECT_EQ(answer(130100), -1);
}

TEST_F(SupportVersionList, WithoutAReadableListNothingIsSupported) {
  EXPECT_EQ(answer(), -1);
  world.files.addFolder(versionListPath);
  EXPECT_EQ(answer(), -1);
  world.files.remove(versionListPath);
  world.files.addFile(versionListPath, "no property list");
  EXPECT_EQ(answer(), -1);
}

TEST_F(SupportVersionList, WithoutAUsableEntryNothingIsSupported) {
  const Dictionary lists[] = {
      {},
      {{"1003.2", "10.16.0"}},
      {{"3.1", "10.16.0"}},
      {{"1003.1", 10.16}},
      {{"1003.1", 101600}},
      {{"1003.1", true}},
      {{"1003.1", Value::Array{"10.16.0"}}},
      {{"1003.1", ""}},
      {{"1003.1", "abc"}},
      {{"1003.1", "100.0"}},
      {{"1003.1", "\xFF"}},
  };
  for (const Dictionary& entries : lists) {
    list(entries);
    EXPECT_EQ(answer(), -1);
  }
  EXPECT_EQ(world.journal.count("system.gestalt"), 0U);
}

TEST_F(SupportVersionList, AnUnknownOSVersionIsNotSupported) {
  list({{"1003.1", "99.0.0"}});
  world.system.answers.clear();
  EXPECT_EQ(answer(), -1);
}

TEST_F(SupportVersionList, AVersionThatHasNoTextReadsNoList) {
  list({{"1003.1", "10.16.0"}});
  for (const std::int32_t version : {-1, 0, 9999, 1000000}) EXPECT_EQ(answer(version), -1);
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(SupportVersionList, TheListIsReadBeforeTheOSIsAsked) {
  list({{"1003.1", "10.16.0"}});
  EXPECT_EQ(answer(), 1);
  const Journal::Lines lines = world.journal.lines();
  ASSERT_EQ(lines.size(), 6U);
  EXPECT_EQ(lines[2], "propertyLists.read " + versionListPath);
  EXPECT_EQ(lines[3], "system.gestalt sys1");
}

TEST_F(SupportVersionList, WithoutAConfigurationFolderNoListIsRead) {
  world.user.container = {true, std::nullopt};
  EXPECT_EQ(answer(), -1);
  EXPECT_EQ(world.journal.count("propertyLists.read"), 0U);
}

class ModuleVersion : public PlatformTest {};

TEST_F(ModuleVersion, IsTheBundleVersionAtEachFixedPath) {
  world.bundles.informationByPath[hostBundle] = {{"CFBundleVersion", "2.1.4"},
                                                 {"CFBundleShortVersionString", "9.9.9"}};
  world.bundles.informationByPath[installedBundle] = {{"CFBundleVersion", "3.0.1"}};
  EXPECT_EQ(Toolkit::moduleVersion(), 20104);
  EXPECT_EQ(Toolkit::moduleVersionFromBundle(), 30001);
  EXPECT_EQ(world.journal.lines(), (Journal::Lines{"bundles.informationAt " + hostBundle,
                                                   "bundles.informationAt " + installedBundle}));
}

TEST_F(ModuleVersion, IsUnknownWithoutBundleOrKeyOrVersion) {
  EXPECT_EQ(Toolkit::moduleVersion(), -1);
  EXPECT_EQ(Toolkit::moduleVersionFromBundle(), -1);
  const Dictionary informations[] = {{},
                                     {{"CFBundleShortVersionString", "3.0.1"}},
                                     {{"CFBundleVersion", 3}},
                                     {{"CFBundleVersion", "abc"}}};
  for (const Dictionary& information : informations) {
    world.bundles.informationByPath[hostBundle] = information;
    world.bundles.informationByPath[installedBundle] = information;
    EXPECT_EQ(Toolkit::moduleVersion(), -1);
    EXPECT_EQ(Toolkit::moduleVersionFromBundle(), -1);
  }
}

}  // namespace
}  // namespace wenlolib::tests
