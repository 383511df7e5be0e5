#include "platform/apple/AppleUser.h"

#include "platform/apple/Foundation.h"
#include "platform/apple/Strings.h"

namespace wenlolib::platform::apple {

Text AppleUser::loginName() {
  return foundation::userName();
}

Text AppleUser::homeFolder() {
  return foundation::homeFolder();
}

Text AppleUser::libraryFolder() {
  return foundation::libraryFolder();
}

Container AppleUser::groupContainer(std::string_view groupIdentifier) {
  return foundation::groupContainer(groupIdentifier);
}

Text AppleUser::locale() {
  // The search goes on from the application's own domain to the global one.
  const Owned<CFPropertyListRef> setting(
      CFPreferencesCopyAppValue(CFSTR("AppleLocale"), kCFPreferencesCurrentApplication));
  return textOf(as<CFStringRef>(CFStringGetTypeID(), setting.get()));
}

}  // namespace wenlolib::platform::apple
