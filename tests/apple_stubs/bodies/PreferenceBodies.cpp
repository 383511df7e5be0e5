#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFStringRef kCFPreferencesCurrentApplication = stubConstantString("current application");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  if (refused("CFPreferencesCopyAppValue") || application != kCFPreferencesCurrentApplication) {
    return nullptr;
  }
  const auto found = world().preferences.find(behind<StringObject>(key, stringType)->text);
  if (found == world().preferences.end()) return nullptr;
  if (!found->second) return reference<CFPropertyListRef>(new PlainObject(numberType));
  return reference<CFPropertyListRef>(new StringObject(*found->second));
}
