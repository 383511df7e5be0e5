#include "apple_stubs/bodies/Conversion.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFStringRef kCFPreferencesCurrentApplication = stubConstantString("current application");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  if (refused("CFPreferencesCopyAppValue") || application != kCFPreferencesCurrentApplication) {
    return nullptr;
  }
  const auto found = world().preferences.find(behind<StringObject>(key, stringType)->text);
  return found == world().preferences.end() ? nullptr : made(found->second);
}
