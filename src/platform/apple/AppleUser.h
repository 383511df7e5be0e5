/// The user on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEUSER_H
#define WENLOLIB_PLATFORM_APPLE_APPLEUSER_H

#include "platform/User.h"

namespace wenlolib::platform::apple {

class AppleUser : public User {
 public:
  Text loginName() override;
  Text homeFolder() override;
  Text libraryFolder() override;
  Container groupContainer(std::string_view groupIdentifier) override;
  Text locale() override;  // null also where the setting is no text
};

}  // namespace wenlolib::platform::apple

#endif
