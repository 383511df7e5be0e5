// Sound property lists whose values are not of the expected types.
#include "endtoend/World.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

class WrongTypes : public WorldTest {};

TEST_F(WrongTypes, ALanguageThatIsNotTextGivesNoLocale) {
  const auto record = WENLOLIB::initWithContents("contents", "App", 1);
  ASSERT_EQ(record->getLocale(), "fr_FR");
  for (const Value& language : {Value(5), Value(true), Value(Value::Array{"fr_FR"})}) {
    world.writePreferences({{"LatestSelectedLanguage", language}});
    EXPECT_EQ(record->getLocale(), "");
  }
}

TEST_F(WrongTypes, AListEntryThatIsNotTextSupportsNothing) {
  world.memory.system.setVersion(10, 17, 0);
  const auto answerFor = [&](const Value& entry) {
    writeFile(world.real(versionListPath),
              world.services.propertyLists->asXml({{"1003.0", entry}}).value());
    return CommonTooWenlolib::getandcompLocalSupportVersion(30001);
  };
  ASSERT_EQ(answerFor("10.17.0"), 1);
  for (const Value& entry :
       {Value(11), Value(101700), Value(10.17), Value(Value::Array{"10.17.0"})}) {
    EXPECT_EQ(answerFor(entry), -1);
  }
}

TEST_F(WrongTypes, AVersionOfABundleThatIsNotTextIsUnknown) {
  world.writeBundle(hostBundle, {{"CFBundleShortVersionString", 2.1}, {"CFBundleVersion", 20104}});
  EXPECT_EQ(WENLOLIB::init()->getCliantVersion(), "");
  EXPECT_EQ(CommonTooWenlolib::moduleVersion(), -1);
}

TEST_F(WrongTypes, InThePreferencesRefuse) {
  const Instant installed = world.memory.clock.time - Seconds(secondsADay);
  world.writePreferences(
      {{"InstalledDate", "2024-03-14T00:00:00Z"}, {"LatestSelectedAgreement", true}});
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  world.writePreferences({{"InstalledDate", installed}, {"LatestSelectedAgreement", "YES"}});
  EXPECT_FALSE(WENLOLIB::isSupported(1));
  world.writePreferences({{"InstalledDate", installed}, {"LatestSelectedAgreement", 1.5}});
  EXPECT_TRUE(WENLOLIB::isSupported(1));
}

}  // namespace
}  // namespace wenlolib::tests
