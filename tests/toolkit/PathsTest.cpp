#include "toolkit/Folders.h"

#include <gtest/gtest.h>

#include "base/Path.h"
#include "support/PlatformTest.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"

namespace wenlolib::tests {
namespace {

TEST(Joined, PutsOneSlashBetweenBaseAndPart) {
  const struct {
    Text base;
    const char* part;
    Text result;
  } table[] = {
      {"/a", "b", "/a/b"}, {"/a/", "b", "/a/b"},  {"/a", "b/c", "/a/b/c"},
      {"/", "b", "/b"},    {"/a/", "/b", "/a/b"}, {std::nullopt, "b", std::nullopt},
      {"", "b", "b"},      {"", "b/c", "b/c"},    {"", "/b", "/b"},
      {"", "", ""},        {"//", "b", "/b"},     {std::nullopt, "", std::nullopt},
  };
  for (const auto& row : table) EXPECT_EQ(join(row.base, row.part), row.result);
}

class HomeExpanded : public PlatformTest {};

TEST_F(HomeExpanded, ReplacesOnlyALeadingTildeThatStandsForTheUsersHome) {
  const struct {
    Text path, result;
  } table[] = {
      {"~", "/Users/ada"},
      {"~/a/b", "/Users/ada/a/b"},
      {"/a/~", "/a/~"},
      {"~bob/a", "~bob/a"},
      {"~b", "~b"},
      {"/a", "/a"},
      {"", ""},
      {std::nullopt, std::nullopt},
  };
  for (const auto& row : table) EXPECT_EQ(expandHome(row.path), row.result);
}

TEST_F(HomeExpanded, WithoutAHomeFolderPathsStayAsTheyAre) {
  world.user.home = std::nullopt;
  EXPECT_EQ(expandHome("~/a"), Text("~/a"));
}

TEST(OptionMode, IsTheLowFourBits) {
  EXPECT_EQ(optionMode(0), 0U);
  EXPECT_EQ(optionMode(17), 1U);
  EXPECT_EQ(optionMode(18), 2U);
  EXPECT_EQ(optionMode(15), 15U);
  EXPECT_EQ(optionMode(0xFFFFFFF0U), 0U);
  EXPECT_EQ(optionMode(0xFFFFFFFFU), 15U);
}

TEST(Entry, IsFoundByItsExactKey) {
  const Dictionary dictionary = {{"Key", "text"}, {"Number", 1}, {"Bad", "\xFF"}};
  ASSERT_NE(entry(dictionary, "Key"), nullptr);
  EXPECT_EQ(entry(dictionary, "key"), nullptr);
  EXPECT_EQ(entry(std::nullopt, "Key"), nullptr);
  EXPECT_EQ(textEntry(dictionary, "Key"), Text("text"));
  EXPECT_EQ(textEntry(dictionary, "Number"), std::nullopt);
  EXPECT_EQ(textEntry(dictionary, "Bad"), std::nullopt);
  EXPECT_EQ(textEntry(dictionary, "Missing"), std::nullopt);
  EXPECT_EQ(textEntry(std::nullopt, "Key"), std::nullopt);
}

class HostPreferences : public InstalledTest {};

TEST_F(HostPreferences, AreReadAnewAtEveryCall) {
  EXPECT_EQ(hostPreferences(), agreedPreferences(world.clock.time, 100));
  world.propertyLists.add(preferencePath, {{"a", 1}});
  EXPECT_EQ(hostPreferences(), (Dictionary{{"a", 1}}));
}

TEST_F(HostPreferences, AreReadOnlyWhereAFileIs) {
  world.files.remove(preferencePath);
  EXPECT_EQ(hostPreferences(), std::nullopt);
  world.files.addFolder(preferencePath);
  EXPECT_EQ(hostPreferences(), std::nullopt);
  world.files.remove(preferencePath);
  world.files.addDanglingLink(preferencePath);
  EXPECT_EQ(hostPreferences(), std::nullopt);
  EXPECT_EQ(world.journal.count("propertyLists.read"), 0U);
  world.files.addFile(preferencePath, "no property list");
  EXPECT_EQ(hostPreferences(), std::nullopt);
  EXPECT_EQ(world.journal.count("propertyLists.read"), 1U);
}

TEST_F(HostPreferences, WithoutAConfigurationFolderNoFileIsLookedFor) {
  world.user.container = {true, std::nullopt};
  EXPECT_EQ(hostPreferences(), std::nullopt);
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"user.groupContainer K7MW2PL9QD.QX.common"});
}

}  // namespace
}  // namespace wenlolib::tests
