#include "library/RecordFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>

#include "base/Integer.h"
#include "library/Wording.h"
#include "record/RecordFile.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

/// The name of a printer log whose file name ends in "_NUMBER.PLM", or nothing.
std::optional<std::string> numberedName(const std::string& file) {
  constexpr std::string_view extension = ".PLM";
  const std::size_t line = file.rfind('_');
  if (line == std::string::npos || !file.ends_with(extension)) return std::nullopt;
  int number = 0;
  const char* end = file.data() + file.size() - extension.size();
  const auto result = std::from_chars(file.data() + line + 1, end, number);
  const bool counts = result.ec == std::errc() && result.ptr == end && number >= 1;
  return counts && number <= lastPrinterLogNumber ? std::optional(file.substr(0, line))
                                                  : std::nullopt;
}

}  // namespace

std::map<std::string, int> takenNumbers(const std::string& folder) {
  namespace fs = std::filesystem;
  std::map<std::string, int> taken;
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    if (const auto name = numberedName(entries->path().filename().string())) ++taken[*name];
  }
  return taken;
}

std::string numbersRemedy() {
  return "Move old logs away: when all numbers are taken, each new log replaces number " +
         decimal(lastPrinterLogNumber) + ".";
}

std::string absentFolderText(int error) {
  return error == ENOENT ? "missing"
                         : "cannot be examined: " + std::generic_category().message(error);
}

std::string absentFolderRemedy(int error) {
  return error == ENOENT ? "Run wenlolib init to make it."
                         : "Give this user access to the folders above it.";
}

std::string lockedFolderText(int error) {
  return "nothing can be written in it: " + reasonText({platform::Step::makeFile, error});
}

std::string lockedFolderRemedy(int error) {
  return error == EROFS ? "Remount the disk read-write."
                        : "Make the user who records its owner and set mode 0700.";
}

namespace {

std::optional<Obstacle> folderObstacle(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    const int error = errno;
    return Obstacle{error == ENOENT ? "folder_missing" : "folder_unknown", true, path,
                    absentFolderText(error), absentFolderRemedy(error)};
  }
  if (!S_ISDIR(status.st_mode)) {
    return Obstacle{"not_a_folder", true, path, "not a folder",
                    "Move it away, then run wenlolib init."};
  }
  if (::faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    const int error = errno;
    return Obstacle{"not_writable", true, path, lockedFolderText(error), lockedFolderRemedy(error)};
  }
  return std::nullopt;
}

}  // namespace

std::vector<Obstacle> obstacles(const ToolPlatform& platform, RecordKind kind) {
  const bool application = kind == RecordKind::application;
  const Text folder = application ? applicationLogFolder() : printerLogFolder();
  if (!folder) {
    return {{"home_unknown", true, "home folder", "not known", "Set HOME to an absolute path."}};
  }
  const std::string path = platform.real(*folder);
  if (const auto obstacle = folderObstacle(path)) return {*obstacle};
  std::vector<Obstacle> found;
  if (application) return found;
  for (const auto& [name, count] : takenNumbers(path)) {
    if (count < lastPrinterLogNumber) continue;
    found.push_back({"numbers_full", false, std::string(path).append("/").append(name) + "_*.PLM",
                     "all " + decimal(lastPrinterLogNumber) +
                         " numbers are taken, so the next log of this name replaces the last",
                     numbersRemedy()});
  }
  return found;
}

}  // namespace wenlolib::tools
