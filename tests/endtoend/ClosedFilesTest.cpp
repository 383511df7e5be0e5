// Files that the host's user may not read.
#include <sys/stat.h>

#include <filesystem>

#include "endtoend/World.h"
#include "platform/posix/Child.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

/// What `work` answers for a user without rights who may not read the file at `path`.
std::string whereClosed(const World& world, const std::string& path,
                        const std::function<std::string()>& work) {
  if (::chmod(world.real(path).c_str(), 0) != 0) return "no permissions changed";
  return inChild([&]() -> std::string {
    const bool let = becomeUnprivileged() && ::access(world.root.path().c_str(), X_OK) == 0;
    return let ? work() : notPermitted;
  });
}

class ClosedFiles : public WorldTest {};

TEST_F(ClosedFiles, PreferencesAllowModeTwoAlone) {
  const std::string answer = whereClosed(world, preferencePath, [] {
    return std::to_string(WENLOLIB::isSupported(1)) + std::to_string(WENLOLIB::isSupported(2)) +
           std::to_string(WENLOLIB::isSupportedPlm(0));
  });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer, "010");
}

TEST_F(ClosedFiles, AConfigurationIsReplacedWhole) {
  writeFile(world.real(identifierPath), *world.services.propertyLists->asXml({{"other", 1}}));
  ASSERT_EQ(::chmod(world.real(configurationFolder).c_str(), 0777), 0);
  const std::string answer =
      whereClosed(world, identifierPath, [] { return WENLOLIB::init()->getWENLOLIBId(); });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer.size(), 38U) << answer;
  EXPECT_EQ(world.configuration(), (Dictionary{{"WENLIBUUID", answer}}));
  EXPECT_EQ(modeOf(world.real(identifierPath)), 0666U);
}

TEST_F(ClosedFiles, ASupportVersionListSupportsNothing) {
  world.memory.system.setVersion(10, 17, 0);
  world.writeBundle(installedBundle, {{"CFBundleVersion", "3.0.1"}});
  writeFile(world.real(versionListPath),
            world.services.propertyLists->asXml({{"1003.0", "10.17.0"}}).value());
  ASSERT_TRUE(WENLOLIB::isSupportedPlm(0));
  const std::string answer = whereClosed(world, versionListPath, [] {
    return std::to_string(WENLOLIB::isSupportedPlm(0)) + " " +
           std::to_string(CommonTooWenlolib::getandcompLocalSupportVersion(30001));
  });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer, "0 -1");
}

TEST_F(ClosedFiles, APrinterListGivesNoDictionary) {
  const std::string library = "/Users/ada/Library/Preferences/com.orvan.printing.Quillmere.";
  const auto answerWithout = [&](const std::string& name) {
    std::filesystem::create_directories(world.real("/Users/ada/Library/Preferences"));
    for (const char* file : {"TargetPrinterList.plist", "SurveyInfo.plist"}) {
      writeFile(world.real(library + file),
                world.services.propertyLists->asXml({{"a", 1}}).value());
    }
    return whereClosed(world, library + name, [] {
      return std::to_string(CommonTooWenlolib::printerListDictionary().has_value()) +
             std::to_string(CommonTooWenlolib::surveyInfoDictionary().has_value());
    });
  };
  const std::string withoutList = answerWithout("TargetPrinterList.plist");
  if (withoutList == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(withoutList, "01");
  std::filesystem::remove(world.real(library + "TargetPrinterList.plist"));
  EXPECT_EQ(answerWithout("SurveyInfo.plist"), "10");
}

TEST_F(ClosedFiles, AHostsInformationLeavesItsVersionUnknown) {
  const std::string answer = whereClosed(world, hostBundle + "/Contents/Info.plist", [] {
    return "'" + WENLOLIB::init()->getCliantVersion() + "'";
  });
  if (answer == notPermitted) GTEST_SKIP() << "giving up rights is not permitted";
  EXPECT_EQ(answer, "''");
}

}  // namespace
}  // namespace wenlolib::tests
