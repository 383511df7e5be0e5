// Folders: whether they are there, who owns them, which numbers of printer logs are taken, and how
// much room is left.
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <system_error>

#include "base/Integer.h"
#include "doctor/Examination.h"
#include "library/RecordFolder.h"
#include "record/RecordFile.h"
#include "terminal/Format.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

std::string modeText(mode_t mode) {
  return fmt::format("mode {:04o}", mode & 07777U);
}

Finding missingFolderFinding(const std::string& path, int error) {
  return {Level::error, "folder", path, absentFolderText(error), absentFolderRemedy(error)};
}

Finding folderFinding(const std::string& path, const struct stat& status) {
  if (!S_ISDIR(status.st_mode)) {
    return {Level::error, "folder", path, "not a folder", "Move it away, then run wenlolib init."};
  }
  if (::faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
    const int error = errno;
    return {Level::error, "folder", path, lockedFolderText(error) + ", " + modeText(status.st_mode),
            lockedFolderRemedy(error)};
  }
  if (::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) {
    return {Level::error, "folder", path,
            "this user may not look into it, " + modeText(status.st_mode),
            lockedFolderRemedy(errno)};
  }
  if (status.st_uid != ::geteuid()) {
    return {Level::warning, "folder", path, "belongs to another user",
            "Run wenlolib as the user who records, or make this user the owner."};
  }
  const bool writable = (status.st_mode & 022U) != 0;
  if (!writable && (status.st_mode & 055U) == 0) {
    return {Level::ok, "folder", path, modeText(status.st_mode), ""};
  }
  const std::string who =
      writable ? "other users may write in it, " : "other users may look into it, ";
  return {Level::warning, "folder", path,
          who + modeText(status.st_mode) +
              "; record files have mode 0666, so only the folder protects them",
          "Set mode 0700 (chmod 700)."};
}

}  // namespace

void checkFolders(const ToolPlatform& platform, Findings& findings) {
  if (!supportFolder()) {
    findings.push_back({Level::error, "home", "home folder", "not known",
                        "Set HOME to an absolute path; without it nothing can be recorded."});
    return;
  }
  for (const Text& folder : {printerLogFolder(), applicationLogFolder(), configurationFolder()}) {
    const std::string path = platform.real(folder.value_or(""));
    struct stat status {};
    findings.push_back(::stat(path.c_str(), &status) == 0 ? folderFinding(path, status)
                                                          : missingFolderFinding(path, errno));
  }
}

namespace {

namespace fs = std::filesystem;

constexpr int manyNumbers = 900;

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
  bool good = true;
  for (const auto& [name, count] : takenNumbers(folder)) {
    if (count < manyNumbers) continue;
    good = false;
    findings.push_back({Level::warning, "printer_log_numbers",
                        std::string(folder).append("/").append(name).append("_*.PLM"),
                        groupDigits(static_cast<std::uint64_t>(count)) + " of " +
                            decimal(lastPrinterLogNumber) + " numbers are taken",
                        numbersRemedy()});
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

namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

}  // namespace

Finding roomFinding(const std::string& folder, const struct statvfs& disk) {
  const std::uint64_t room = std::uint64_t{disk.f_bavail} * disk.f_frsize;
  Finding finding{Level::ok, "disk", folder, sizeText(room) + " free", ""};
  const bool noFiles = disk.f_files > 0 && disk.f_favail == 0;
  if ((disk.f_flag & ST_RDONLY) != 0) {
    finding.level = Level::error;
    finding.message = "on a read-only file system";
    finding.remedy = lockedFolderRemedy(EROFS);
  } else if (room < mebibyte || noFiles) {
    finding.level = Level::error;
    finding.message += noFiles ? ", but no inodes for another file" : "";
    finding.remedy = "Make room. Without it, records are lost.";
  } else if (room < 100 * mebibyte) {
    finding.level = Level::warning;
    finding.remedy = "Make room before records are lost.";
  }
  return finding;
}

Finding unknownRoomFinding(const std::string& folder, int error) {
  return {Level::warning, "disk", folder,
          "its free space is not known: " + std::generic_category().message(error),
          "Check it with df. Without room, records are lost."};
}

}  // namespace wenlolib::tools
