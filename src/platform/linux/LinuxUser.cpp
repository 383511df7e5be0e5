#include "platform/linux/LinuxUser.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "base/Path.h"
#include "base/Utf8.h"
#include "platform/posix/CancellationHold.h"
#include "platform/posix/Errors.h"

namespace wenlolib::platform::gnulinux {
namespace {

Text usable(const char* text) {
  return text == nullptr ? Text() : utf8OrNull(Text(text));
}

/// A variable's bytes, text or not; "" where it is not set.
std::string environmentBytes(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// A field of the user's entry in the password database.
Text passwordField(char* passwd::*field) {
  const posix::CancellationHold hold;
  constexpr std::size_t largest = std::size_t{1} << 20;
  passwd entry{};
  passwd* found = nullptr;
  for (std::vector<char> buffer(1024); buffer.size() <= largest; buffer.resize(2 * buffer.size())) {
    const int status = getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    if (status == EINTR || status == ERANGE) continue;
    if (status != 0) posix::throwUnlessAnswer(status);
    return found == nullptr ? Text() : usable(found->*field);
  }
  return std::nullopt;
}

}  // namespace

Text localeWithoutCodeset(std::string_view name) {
  const std::size_t modifier = std::min(name.find('@'), name.size());
  const std::string_view language = name.substr(0, std::min(name.find('.'), modifier));
  if (language.empty() || language == "C" || language == "POSIX") return std::nullopt;
  return std::string(language).append(name.substr(modifier));
}

Text LinuxUser::loginName() {
  return passwordField(&passwd::pw_name);
}

Text LinuxUser::homeFolder() {
  std::string home = environmentBytes("HOME");
  // A home that is no text is still the one meant: no other may take its place.
  if (home.starts_with('/')) return utf8OrNull(std::move(home));
  return passwordField(&passwd::pw_dir);
}

Text LinuxUser::libraryFolder() {
  return joined(homeFolder(), "Library");
}

Container LinuxUser::groupContainer(std::string_view groupIdentifier) {
  const std::string part = std::string("Library/Group Containers/").append(groupIdentifier);
  return {true, joined(homeFolder(), part)};
}

Text LinuxUser::locale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = environmentBytes(name);
    if (!value.empty()) return isUtf8(value) ? localeWithoutCodeset(value) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace wenlolib::platform::gnulinux
