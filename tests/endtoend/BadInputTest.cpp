// A file may hold any bytes: the answer is the one for a missing file, in bounded time.
#include <chrono>
#include <filesystem>

#include "endtoend/BadFiles.h"
#include "endtoend/World.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

class BadInput : public WorldTest, public testing::WithParamInterface<BadFile> {
 protected:
  ~BadInput() override {
    const auto took = std::chrono::steady_clock::now() - start_;
    EXPECT_LT(took, std::chrono::seconds(10));
  }

  void spoil(const std::string& path) {
    std::filesystem::create_directories(std::filesystem::path(world.real(path)).parent_path());
    std::filesystem::remove(world.real(path));
    GetParam().make(world.real(path));
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

TEST_P(BadInput, AsPreferencesAllowsModeTwoAlone) {
  ASSERT_TRUE(WENLOLIB::isSupported(0) && WENLOLIB::isSupported(1) && WENLOLIB::isSupportedPlm(0));
  spoil(preferencePath);
  EXPECT_FALSE(WENLOLIB::isSupported(0));
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  EXPECT_TRUE(WENLOLIB::isSupported(2));
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(0));
  EXPECT_EQ(WENLOLIB::initWithContents("contents", "App", 1)->getLocale(), "");
}

TEST_P(BadInput, AsSupportVersionListSupportsNothing) {
  world.memory.system.setVersion(10, 17, 0);
  world.writeBundle(installedBundle, {{"CFBundleVersion", "3.0.1"}});
  writeFile(world.real(versionListPath),
            world.services.propertyLists->asXml({{"1003.0", "10.17.0"}}).value());
  ASSERT_TRUE(WENLOLIB::isSupportedPlm(0));
  spoil(versionListPath);
  EXPECT_FALSE(WENLOLIB::isSupportedPlm(0));
  EXPECT_EQ(CommonTooWenlolib::getandcompLocalSupportVersion(30001), -1);
}

TEST_P(BadInput, AsConfigurationIsReplacedWhole) {
  spoil(identifierPath);
  const std::string identifier = WENLOLIB::init()->getWENLOLIBId();
  EXPECT_EQ(identifier.size(), 38U);
  EXPECT_EQ(namesIn(world.real(configurationFolder)).size(), 2U);
  if (GetParam().removable) {
    EXPECT_EQ(world.configuration(), (Dictionary{{"WENLIBUUID", identifier}}));
    EXPECT_EQ(modeOf(world.real(identifierPath)), 0666U);
    EXPECT_EQ(WENLOLIB::init()->getWENLOLIBId(), identifier);
  } else {
    EXPECT_NE(WENLOLIB::init()->getWENLOLIBId(), identifier);
  }
}

TEST_P(BadInput, AsTheHostsInformationLeavesItsVersionUnknown) {
  world.writeBundle(installedBundle, {{"CFBundleShortVersionString", "3.0.1"}});
  ASSERT_EQ(WENLOLIB::init()->getCliantVersion(), "2.1");
  spoil(hostBundle + "/Contents/Info.plist");
  EXPECT_EQ(WENLOLIB::init()->getCliantVersion(), "");
  EXPECT_EQ(CommonTooWenlolib::moduleVersion(), -1);
}

TEST_P(BadInput, AsTheInstalledLibrarysInformationLeavesItsVersionUnknown) {
  world.writeBundle(installedBundle, {{"CFBundleVersion", "3.0.1"}});
  ASSERT_EQ(CommonTooWenlolib::moduleVersionFromBundle(), 30001);
  spoil(installedBundle + "/Contents/Info.plist");
  EXPECT_EQ(CommonTooWenlolib::moduleVersionFromBundle(), -1);
}

TEST_P(BadInput, AsPrinterListOrSurveyInformationGivesNoDictionary) {
  const std::string list = "/Users/ada/Library/Preferences/com.orvan.printing.Quillmere.";
  spoil(list + "TargetPrinterList.plist");
  spoil(list + "SurveyInfo.plist");
  EXPECT_EQ(CommonTooWenlolib::printerListDictionary(), std::nullopt);
  EXPECT_EQ(CommonTooWenlolib::surveyInfoDictionary(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Files, BadInput, testing::ValuesIn(badFiles()),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace wenlolib::tests
