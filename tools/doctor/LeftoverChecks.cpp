// Unfinished files, and their removal.
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "doctor/Examination.h"
#include "platform/posix/AtomicFile.h"
#include "terminal/Format.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t anHour = 3600;
constexpr std::int64_t aDay = 24 * anHour;
constexpr std::size_t mostListed = 20;

std::string agoText(std::int64_t seconds) {
  if (seconds < 2 * anHour) return countText(static_cast<std::uint64_t>(seconds / 60), "minute");
  if (seconds < 2 * aDay) return countText(static_cast<std::uint64_t>(seconds / anHour), "hour");
  return countText(static_cast<std::uint64_t>(seconds / aDay), "day");
}

/// Every unfinished file below `folder`, in the sub-folders as well: a "/" in a name leads there.
/// Links to folders are not followed.
void addUnfinished(const std::string& folder, std::vector<std::string>& paths) {
  std::error_code error;
  fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied,
                                           error);
  for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
    if (platform::posix::isUnfinished(entries->path().filename().string()))
      paths.push_back(entries->path().string());
  }
}

Finding vanishedFinding(const std::string& path) {
  return {Level::ok, "leftover", path, "no longer there: it was being written", ""};
}

/// Removes the file that `message` describes.
Finding removeLeftover(const std::string& path, const std::string& message) {
  if (::unlink(path.c_str()) == 0) {
    return {Level::ok, "leftover_removed", path, message + ": removed", ""};
  }
  if (errno == ENOENT) return vanishedFinding(path);
  return {Level::error, "leftover", path,
          message + ": cannot be removed: " + std::generic_category().message(errno),
          "Remove it as the user who owns its folder."};
}

Finding leftoverFinding(const std::string& path, bool clean) {
  const std::string left = clean ? ": left" : "";
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) return vanishedFinding(path);
  if (!S_ISREG(status.st_mode)) {
    return {Level::warning, "leftover", path, "not a regular file" + left,
            "The library did not make it. Check what it is."};
  }
  const std::int64_t age = std::max<std::int64_t>(std::time(nullptr) - status.st_mtime, 0);
  const std::string size = sizeText(static_cast<std::uint64_t>(status.st_size));
  const std::string message = fmt::format("unfinished, {}, {} old", size, agoText(age));
  if (age < anHour) {
    return {Level::ok, "leftover", path, message + left + ", perhaps still being written", ""};
  }
  if (age < aDay) {
    return {Level::warning, "leftover", path,
            message + left + (clean ? ", less than a day old" : ""),
            "A program was killed while writing. wenlolib doctor --clean removes it once it is at "
            "least a day old."};
  }
  if (clean) return removeLeftover(path, message);
  return {Level::warning, "leftover", path, message,
          "A program was killed while writing. wenlolib doctor --clean removes it."};
}

/// The findings beyond those that are listed.
struct Others {
  std::size_t removed = 0;
  std::size_t left = 0;
  Level worst = Level::warning;

  void add(const Finding& finding) {
    ++(finding.check == "leftover_removed" ? removed : left);
    worst = std::max(worst, finding.level);
  }
};

void tell(const Others& others, bool clean, Findings& findings) {
  const std::string subject = "More unfinished files";
  if (others.removed > 0) {
    findings.push_back(
        {Level::ok, "leftover_removed", subject, groupDigits(others.removed) + " removed", ""});
  }
  if (others.left > 0) {
    findings.push_back({others.worst, "leftover", subject,
                        groupDigits(others.left) + (clean ? " left" : ""),
                        "wenlolib doctor --clean removes those that are at least a day old."});
  }
}

}  // namespace

void checkLeftovers(const ToolPlatform& platform, bool clean, Findings& findings) {
  std::vector<std::string> paths;
  for (const Text& folder : {printerLogFolder(), applicationLogFolder(), configurationFolder()}) {
    if (folder) addUnfinished(platform.real(*folder), paths);
  }
  std::ranges::sort(paths);
  if (paths.empty()) findings.push_back({Level::ok, "leftover", "Unfinished files", "none", ""});
  Others others;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    Finding finding = leftoverFinding(paths[i], clean);
    if (i < mostListed) {
      findings.push_back(std::move(finding));
    } else {
      others.add(finding);
    }
  }
  tell(others, clean, findings);
}

}  // namespace wenlolib::tools
