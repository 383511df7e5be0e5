// What lies in the folders of records, and the room that is left for more.
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <ctime>
#include <filesystem>
#include <map>
#include <system_error>

#include "Checks.h"
#include "DiskRoom.h"
#include "Format.h"
#include "platform/posix/AtomicFile.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t anHour = 3600;
constexpr std::size_t mostListed = 20;
constexpr int lastNumber = 999;
constexpr int manyNumbers = 900;

std::string agoText(std::int64_t seconds) {
  if (seconds < 2 * anHour) return counted(static_cast<std::uint64_t>(seconds / 60), "minute");
  if (seconds < 48 * anHour) return counted(static_cast<std::uint64_t>(seconds / anHour), "hour");
  return counted(static_cast<std::uint64_t>(seconds / (24 * anHour)), "day");
}

bool isUnfinished(const std::string& name) {
  return name.starts_with(platform::posix::unfinishedPrefix) && name.ends_with(".tmp");
}

/// Every unfinished file below `folder`, in the sub-folders as well: a "/" in a name leads there.
void addUnfinished(const std::string& folder, std::vector<std::string>& paths) {
  std::error_code error;
  fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied,
                                           error);
  for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
    if (isUnfinished(entries->path().filename().string()))
      paths.push_back(entries->path().string());
  }
}

Finding leftoverFinding(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) {
    return {Level::ok, "leftover", path, "was being written just now", ""};
  }
  const std::int64_t age = std::max<std::int64_t>(std::time(nullptr) - status.st_mtime, 0);
  const std::string message = "unfinished, " +
                              sizeText(static_cast<std::uint64_t>(status.st_size)) + ", " +
                              agoText(age) + " old";
  if (age < anHour) return {Level::ok, "leftover", path, message + ": being written, perhaps", ""};
  return {Level::warning, "leftover", path, message,
          "A program was killed while writing; delete it."};
}

/// The name of a printer log whose file name ends in "_NUMBER.PLM", or nothing.
std::optional<std::string> numberedName(const std::string& file) {
  constexpr std::string_view extension = ".PLM";
  const std::size_t line = file.rfind('_');
  if (line == std::string::npos || !file.ends_with(extension)) return std::nullopt;
  int number = 0;
  const char* end = file.data() + file.size() - extension.size();
  const auto result = std::from_chars(file.data() + line + 1, end, number);
  const bool counts = result.ec == std::errc() && result.ptr == end && number >= 1;
  return counts && number <= lastNumber ? std::optional(file.substr(0, line)) : std::nullopt;
}

/// The folder itself, or the nearest one above it that is there.
std::string nearestFolder(const std::string& path) {
  fs::path folder = path;
  std::error_code error;
  while (!fs::is_directory(folder, error) && folder.has_relative_path()) {
    folder = folder.parent_path();
  }
  return folder.empty() ? "." : folder.string();
}

}  // namespace

void checkLeftovers(const ToolPlatform& platform, Findings& findings) {
  std::vector<std::string> paths;
  for (const Text& folder : {printerLogFolder(), applicationLogFolder(), configurationFolder()}) {
    if (folder) addUnfinished(platform.real(*folder), paths);
  }
  std::ranges::sort(paths);
  for (std::size_t i = 0; i < std::min(paths.size(), mostListed); ++i) {
    findings.push_back(leftoverFinding(paths[i]));
  }
  if (paths.empty()) findings.push_back({Level::ok, "leftover", "Unfinished files", "none", ""});
  if (paths.size() > mostListed) {
    findings.push_back({Level::warning, "leftover", "More unfinished files",
                        grouped(paths.size() - mostListed), "Delete what is hours old."});
  }
}

void checkNumbers(const ToolPlatform& platform, Findings& findings) {
  const std::string folder = platform.real(printerLogFolder().value_or(""));
  std::map<std::string, int> taken;
  std::error_code error;
  fs::directory_iterator entries(folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    if (const auto name = numberedName(entries->path().filename().string())) ++taken[*name];
  }
  bool good = true;
  for (const auto& [name, count] : taken) {
    if (count < manyNumbers) continue;
    good = false;
    findings.push_back({Level::warning, "printer_log_numbers",
                        std::string(folder).append("/").append(name).append("_*.PLM"),
                        grouped(static_cast<std::uint64_t>(count)) + " of 999 numbers are taken",
                        "Take finished logs away: with all taken, number 999 is replaced."});
  }
  if (good) {
    findings.push_back(
        {Level::ok, "printer_log_numbers", "Numbers of printer logs", "enough are free", ""});
  }
}

void checkDisk(const ToolPlatform& platform, Findings& findings) {
  const std::string folder = nearestFolder(platform.real(supportFolder().value_or("/")));
  struct statvfs disk {};
  const bool known = ::statvfs(folder.c_str(), &disk) == 0;
  findings.push_back(known ? roomFinding(folder, disk) : unknownRoomFinding(folder, errno));
}

}  // namespace wenlolib::tools
