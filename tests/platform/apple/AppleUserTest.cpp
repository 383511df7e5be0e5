#include "platform/apple/AppleServices.h"

#include "platform/Platform.h"
#include "platform/apple/StubTest.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

class AppleUser : public PortTest {
 protected:
  AppleUser() {
    services_.user = &user;
    world.userName = "ada";
  }
  platform::apple::AppleUser user;

 private:
  MemoryPlatform memory_;
  platform::Platform services_ = memory_.services;
  platform::Substitute substitute_{services_};
};

TEST_F(AppleUser, HasTheContainerThatTheSystemFinds) {
  world.container = {true, "/private/container"};
  EXPECT_EQ(CommonTooWenlolib::groupContainerDirPath(), "/private/container");
  EXPECT_EQ(world.askedContainer, "K7MW2PL9QD.QX.common");
}

TEST_F(AppleUser, HasNoContainerWhereTheSystemFindsNone) {
  world.container = {true, std::nullopt};
  EXPECT_EQ(CommonTooWenlolib::groupContainerDirPath(), std::nullopt);
  EXPECT_EQ(CommonTooWenlolib::confDirPath(), std::nullopt);
}

TEST_F(AppleUser, HasAFixedContainerWhereTheSystemOffersNoLookup) {
  world.container = {false, std::nullopt};
  EXPECT_EQ(CommonTooWenlolib::groupContainerDirPath(),
            "/Users/ada/Library/Group Containers/K7MW2PL9QD.QX.common");
  world.userName = std::nullopt;
  EXPECT_EQ(CommonTooWenlolib::groupContainerDirPath(), std::nullopt);
}

TEST_F(AppleUser, HasTheFoldersThatTheSystemTells) {
  world.homeFolder = "/Users/ada";
  world.libraryFolder = "/Users/ada/Library";
  EXPECT_EQ(user.homeFolder(), "/Users/ada");
  EXPECT_EQ(CommonTooWenlolib::surveyInfoPath(),
            "/Users/ada/Library/Preferences/com.orvan.printing.Quillmere.SurveyInfo.plist");
  world.libraryFolder = std::nullopt;
  EXPECT_EQ(CommonTooWenlolib::surveyInfoPath(), std::nullopt);
}

TEST_F(AppleUser, HasTheGlobalLocaleSetting) {
  EXPECT_EQ(user.locale(), std::nullopt);
  for (const char* locale : {"en_US", "zh_Hans_CN@currency=EUR", ""}) {
    stubs::useLocaleSetting(locale);
    EXPECT_EQ(user.locale(), locale);
  }
}

TEST_F(AppleUser, HasNoLocaleWhereTheSettingIsNotText) {
  const Text number;
  for (const Text& setting : {number, Text(stubs::halfAPair)}) {
    stubs::useLocaleSetting(setting);
    EXPECT_EQ(user.locale(), std::nullopt);
  }
}

}  // namespace
}  // namespace wenlolib::tests
