/// The user whose process this is.
#ifndef WENLOLIB_PLATFORM_USER_H
#define WENLOLIB_PLATFORM_USER_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform {

/// The answer to a lookup of an app-group container. Where the system does not offer the lookup
/// there is no path either; where it does, the path is null when it finds none.
struct Container {
  bool offered = false;
  Text path;
};

class User {
 public:
  virtual ~User() = default;

  /// The login name, the home folder and the user's Library folder; null where there is none.
  virtual Text loginName() = 0;
  virtual Text homeFolder() = 0;
  virtual Text libraryFolder() = 0;

  virtual Container groupContainer(std::string_view groupIdentifier) = 0;

  /// The user's global locale setting ("AppleLocale"), such as en_US; null where none is set.
  virtual Text locale() = 0;
};

}  // namespace wenlolib::platform

#endif
