#include "WriteFailure.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>
#include <system_error>

namespace wenlolib::tools {
namespace {

constexpr std::size_t longestName = 255;

std::string lastError() {
  return std::generic_category().message(errno);
}

/// What is wrong with the folder that the file was to lie in, if anything is.
std::optional<std::string> folderTrouble(const std::string& folder) {
  struct stat status {};
  if (::stat(folder.c_str(), &status) != 0) {
    if (errno != ENOENT) return "its folder cannot be looked at: " + lastError();
    return "its folder is not there (wenlolib init makes PLM, ALM and Config; a \"/\" in the name "
           "leads into a sub-folder, which somebody else has to make)";
  }
  if (!S_ISDIR(status.st_mode)) return "what should be its folder is none";
  if (::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    return "its folder cannot be written to: " + lastError();
  }
  return std::nullopt;
}

}  // namespace

std::string whyNotWritten(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  if (const auto trouble = folderTrouble(folder)) return "not written: " + *trouble;
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    return "not written: a folder is in its place";
  }
  const std::size_t name = path.size() - (slash == std::string::npos ? 0 : slash + 1);
  if (name > longestName) return "not written: its name is too long";
  return "not written: look at the disk's room, quotas and the limit of file sizes (ulimit -f)";
}

}  // namespace wenlolib::tools
