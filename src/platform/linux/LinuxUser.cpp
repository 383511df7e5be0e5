#include "platform/linux/LinuxUser.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "base/Integer.h"
#include "base/Path.h"
#include "base/Utf8.h"
#include "platform/posix/Errors.h"
#include "platform/posix/WholeFile.h"

namespace wenlolib::platform::gnulinux {
namespace {

Text usable(const char* text) {
  return text == nullptr ? Text() : utf8OrNull(Text(text));
}

/// A variable's bytes, text or not; "" if it is not set.
std::string environmentBytes(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// A field of the user's entry, as a line of the file has it and as the C library returns it.
struct Field {
  int place;  // from 0
  char* passwd::*answered;
};
constexpr Field nameField{0, &passwd::pw_name};
constexpr Field homeField{5, &passwd::pw_dir};

std::string_view partOf(std::string_view line, int place) {
  for (; place > 0; --place) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos) return {};
    line.remove_prefix(colon + 1);
  }
  return line.substr(0, line.find(':'));
}

/// Null if the file of the machine's own users does not list this user.
Text fieldInFile(const Field& field) {
  constexpr std::size_t longestFile = std::size_t{64} << 20;
  const auto file = posix::readWhole("/etc/passwd", longestFile).bytes;
  return file ? fieldOfUser(*file, geteuid(), field.place) : std::nullopt;
}

/// From wherever the C library looks up users.
Text fieldAnswered(const Field& field) {
  constexpr std::size_t largest = std::size_t{1} << 20;
  passwd entry{};
  passwd* found = nullptr;
  for (std::vector<char> buffer(1024); buffer.size() <= largest; buffer.resize(2 * buffer.size())) {
    const int status = getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    if (status == EINTR || status == ERANGE) continue;
    if (status != 0) posix::throwUnlessAnswer(Step::askUser, status);
    return found == nullptr ? Text() : usable(found->*field.answered);
  }
  return std::nullopt;
}

/// The file is asked first. To look up a user, the C library loads modules into the host's process.
/// If one cannot be read, it goes on to the next without saying so, and if memory runs out while it
/// loads them, it crashes.
Text userField(const Field& field) {
  const posix::CancellationHold hold;
  Text found = fieldInFile(field);
  return found ? found : fieldAnswered(field);
}

}  // namespace

Text localeWithoutCodeset(std::string_view name) {
  const std::size_t modifier = std::min(name.find('@'), name.size());
  const std::string_view language = name.substr(0, std::min(name.find('.'), modifier));
  if (language.empty() || language == "C" || language == "POSIX") return std::nullopt;
  return std::string(language).append(name.substr(modifier));
}

Text fieldOfUser(std::string_view file, std::uint32_t user, int place) {
  const std::string number = decimal(user);
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size());
    const std::string_view line = file.substr(0, end);
    if (partOf(line, 2) == number) return utf8OrNull(Text(partOf(line, place)));
    file.remove_prefix(std::min(end + 1, file.size()));
  }
  return std::nullopt;
}

Text LinuxUser::loginName() {
  return userField(nameField);
}

Text LinuxUser::homeFolder() {
  std::string home = environmentBytes("HOME");
  // A home that is not text is still the one meant: no other may take its place.
  if (home.starts_with('/')) return utf8OrNull(std::move(home));
  const Text known = userField(homeField);
  return known && known->starts_with('/') ? known : std::nullopt;
}

Text LinuxUser::libraryFolder() {
  return join(homeFolder(), "Library");
}

Container LinuxUser::groupContainer(std::string_view groupIdentifier) {
  const std::string part = std::string("Library/Group Containers/").append(groupIdentifier);
  return {true, join(homeFolder(), part)};
}

Text LinuxUser::locale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    std::string value = environmentBytes(name);
    if (!value.empty()) return isUtf8(value) ? localeWithoutCodeset(value) : std::nullopt;
  }
  return std::nullopt;
}

}  // namespace wenlolib::platform::gnulinux
