#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFStringRef kCFPreferencesCurrentApplication = stubConstantString("current application");

// Seen: AppleUser.HasTheGlobalLocaleSetting.
CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  if (refused("CFPreferencesCopyAppValue") || application != kCFPreferencesCurrentApplication) {
    return nullptr;
  }
  if (behind<StringObject>(key, stringType)->text != "AppleLocale") return nullptr;
  const auto& setting = world().localeSetting;
  if (!setting) return nullptr;
  if (!*setting) return reference<CFPropertyListRef>(new PlainObject(numberType));
  return reference<CFPropertyListRef>(new StringObject(**setting));
}

void wenlolib::tests::stubs::useLocaleSetting(const std::optional<Text>& setting) {
  world().localeSetting = setting;
}
