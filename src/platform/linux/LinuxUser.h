/// The user on Linux: environment and password database.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXUSER_H
#define WENLOLIB_PLATFORM_LINUX_LINUXUSER_H

#include <cstdint>
#include <string_view>

#include "platform/System.h"

namespace wenlolib::platform::gnulinux {

/// A POSIX locale name without its codeset: "de_DE.UTF-8@euro" gives "de_DE@euro". Null for "C",
/// "POSIX" and the empty name, which name no language.
[[nodiscard]] Text localeWithoutCodeset(std::string_view name);

/// The field at `place`, counted from 0, of a user's line in the file of the machine's own users: 0
/// is the login name, 5 the home folder. Null if the file has no line for `user`.
[[nodiscard]] Text fieldOfUser(std::string_view file, std::uint32_t user, int place);

class LinuxUser : public User {
 public:
  Text loginName() override;
  Text homeFolder() override;  // HOME if it is an absolute path, else from the user's entry
  Text libraryFolder() override;
  Container groupContainer(std::string_view groupIdentifier) override;
  Text locale() override;  // LC_ALL, LC_MESSAGES or LANG, the first that is not empty
};

}  // namespace wenlolib::platform::gnulinux

#endif
