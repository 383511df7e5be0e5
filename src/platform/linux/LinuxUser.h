/// The user on Linux: environment and password database.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXUSER_H
#define WENLOLIB_PLATFORM_LINUX_LINUXUSER_H

#include <string_view>

#include "platform/User.h"

namespace wenlolib::platform::gnulinux {

/// A POSIX locale name without its codeset: "de_DE.UTF-8@euro" gives "de_DE@euro". Null for "C",
/// "POSIX" and the empty name, which name no language.
[[nodiscard]] Text localeWithoutCodeset(std::string_view name);

class LinuxUser : public User {
 public:
  Text loginName() override;
  Text homeFolder() override;  // HOME where that is an absolute path, else the password database's
  Text libraryFolder() override;
  Container groupContainer(std::string_view groupIdentifier) override;
  Text locale() override;  // LC_ALL, LC_MESSAGES or LANG, the first that is not empty
};

}  // namespace wenlolib::platform::gnulinux

#endif
