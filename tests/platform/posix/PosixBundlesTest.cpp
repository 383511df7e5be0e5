#include "platform/posix/PosixPropertyLists.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/linux/LoadedFrom.h"
#include "platform/posix/Child.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using platform::gnulinux::codeFolder;

Text bundleAround(const std::string& object) {
  return platform::posix::bundleAround(object, codeFolder);
}

class PosixBundles : public testing::Test {
 protected:
  TemporaryFolder folder;
  platform::posix::Root root{folder.path()};
  platform::posix::PosixBundles bundles{root, {codeFolder, platform::gnulinux::loadedFrom}};
  std::string information = folder / "A.bundle/Contents/Info.plist";

  void makeBundle() { std::filesystem::create_directories(folder / "A.bundle/Contents"); }
};

constexpr char versions[] =
    "<plist version=\"1.0\"><dict><key>CFBundleVersion</key><string>1.2</string></dict></plist>";

TEST_F(PosixBundles, HaveTheInformationOfTheirFile) {
  makeBundle();
  writeFile(information, versions);
  EXPECT_EQ(bundles.informationAt("/A.bundle"), (Dictionary{{"CFBundleVersion", "1.2"}}));
  EXPECT_EQ(bundles.informationAt("/A.bundle/"), (Dictionary{{"CFBundleVersion", "1.2"}}));
}

TEST_F(PosixBundles, AFolderIsABundleWithoutInformationToo) {
  std::filesystem::create_directory(folder / "A.bundle");
  EXPECT_EQ(bundles.informationAt("/A.bundle"), Dictionary());
  makeBundle();
  EXPECT_EQ(bundles.informationAt("/A.bundle"), Dictionary());
  std::filesystem::create_directory(information);
  EXPECT_EQ(bundles.informationAt("/A.bundle"), Dictionary());
}

TEST_F(PosixBundles, InformationThatIsNotADictionaryCountsAsMissing) {
  makeBundle();
  writeFile(information, "<plist version=\"1.0\"><array></array></plist>");
  EXPECT_EQ(bundles.informationAt("/A.bundle"), Dictionary());
  writeFile(information, std::string(versions).substr(0, 40));
  EXPECT_EQ(bundles.informationAt("/A.bundle"), Dictionary());
}

TEST_F(PosixBundles, InformationThatMayNotBeReadCountsAsMissing) {
  makeBundle();
  writeFile(information, versions);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(information.c_str(), 0), 0);
  const std::string answer = inChild([&]() -> std::string {
    if (!becomeUnprivileged() || ::access(folder.path().c_str(), X_OK) != 0) return notPermitted;
    const auto found = bundles.informationAt("/A.bundle");
    return found ? std::to_string(found->size()) : "no bundle";
  });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer, "0");
}

TEST_F(PosixBundles, WhatIsNotAFolderIsNotABundle) {
  writeFile(folder / "file", "");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  EXPECT_EQ(bundles.informationAt("/missing"), std::nullopt);
  EXPECT_EQ(bundles.informationAt("/file"), std::nullopt);
  EXPECT_EQ(bundles.informationAt("/dangling"), std::nullopt);
  EXPECT_EQ(bundles.informationAt(std::string("/A\0", 3)), std::nullopt);
}

TEST_F(PosixBundles, AProgramOutsideABundleHasNone) {
  EXPECT_EQ(bundles.ownInformation(), std::nullopt);
}

TEST(OwnBundle, IsAroundTheFolderOfTheSharedObject) {
  struct Case {
    const char* sharedObject;
    Text bundle;
  };
  for (const Case& each : {Case{"/opt/A.bundle/Contents/Linux/A", "/opt/A.bundle"},
                           {"/A.bundle/Contents/Linux/libA.so.1", "/A.bundle"},
                           {"/opt/Contents/Linux/Contents/Linux/A", "/opt/Contents/Linux"},
                           {"/opt/without suffix/Contents/Linux/A", "/opt/without suffix"},
                           {"/usr/lib/libA.so.1", std::nullopt},
                           {"/opt/A.bundle/Contents/MacOS/A", std::nullopt},
                           {"/opt/A.bundle/Contents/Linux/more/A", std::nullopt},
                           {"/opt/A.bundle/MyContents/Linux/A", std::nullopt},
                           {"A", std::nullopt},
                           {"", std::nullopt}}) {
    EXPECT_EQ(bundleAround(each.sharedObject), each.bundle) << each.sharedObject;
  }
}

}  // namespace
}  // namespace wenlolib::tests
