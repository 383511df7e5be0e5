// The numbers of printer logs that are taken, and the room that is left for more.
#include <sys/statvfs.h>

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <map>
#include <system_error>

#include "Checks.h"
#include "DiskRoom.h"
#include "Format.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

namespace fs = std::filesystem;

constexpr int lastNumber = 999;
constexpr int manyNumbers = 900;

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
