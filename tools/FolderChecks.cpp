// Folders: whether they are there, and whose they are.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <system_error>

#include "Checks.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

std::string modeText(mode_t mode) {
  char digits[8];
  const auto result = std::to_chars(digits, digits + sizeof digits, mode & 07777U, 8);
  return "mode 0" + std::string(digits, result.ptr);
}

Finding missing(const std::string& path) {
  const std::string message =
      errno == ENOENT ? "is not there"
                      : "cannot be looked at: " + std::generic_category().message(errno);
  return {Level::error, "folder", path, message,
          errno == ENOENT ? "wenlolib init makes it." : "Let this user search the folders above."};
}

Finding examined(const std::string& path, const struct stat& status) {
  if (!S_ISDIR(status.st_mode)) {
    return {Level::error, "folder", path, "is no folder", "Move it away, then wenlolib init."};
  }
  if (::faccessat(AT_FDCWD, path.c_str(), R_OK | W_OK | X_OK, AT_EACCESS) != 0) {
    return {Level::error, "folder", path,
            "this user cannot read or write in it: " + modeText(status.st_mode),
            "Give it to the user who records, with mode 0700."};
  }
  if (status.st_uid != ::geteuid()) {
    return {Level::warning, "folder", path, "belongs to another user",
            "Run wenlolib as the user who records, or give the folder to this one."};
  }
  const bool writable = (status.st_mode & 022U) != 0;
  if (!writable && (status.st_mode & 055U) == 0) {
    return {Level::ok, "folder", path, "is there, " + modeText(status.st_mode), ""};
  }
  const std::string who = writable ? "other users may write in it, " : "other users may look in, ";
  return {Level::warning, "folder", path,
          who + modeText(status.st_mode) + "; record files are open to all, so it protects them",
          "chmod 700"};
}

}  // namespace

void checkFolders(const ToolPlatform& platform, Findings& findings) {
  if (!supportFolder()) {
    findings.push_back({Level::error, "home", "home folder", "is not known",
                        "Set HOME to an absolute path; without it nothing can be recorded."});
    return;
  }
  for (const Text& folder : {printerLogFolder(), applicationLogFolder(), configurationFolder()}) {
    const std::string path = platform.real(folder.value_or(""));
    struct stat status {};
    findings.push_back(::stat(path.c_str(), &status) == 0 ? examined(path, status) : missing(path));
  }
}

}  // namespace wenlolib::tools
