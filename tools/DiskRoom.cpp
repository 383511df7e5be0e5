#include "DiskRoom.h"

#include <cstdint>
#include <system_error>

#include "Format.h"

namespace wenlolib::tools {
namespace {

constexpr std::uint64_t mebibyte = std::uint64_t{1} << 20;

}  // namespace

Finding roomFinding(const std::string& folder, const struct statvfs& disk) {
  const std::uint64_t room = std::uint64_t{disk.f_bavail} * disk.f_frsize;
  Finding finding{Level::ok, "disk", folder, sizeText(room) + " of room", ""};
  const bool noFiles = disk.f_files > 0 && disk.f_favail == 0;
  if ((disk.f_flag & ST_RDONLY) != 0) {
    finding.level = Level::error;
    finding.message = "is on a read-only file system";
    finding.remedy = "Mount it for writing.";
  } else if (room < mebibyte || noFiles) {
    finding.level = Level::error;
    finding.message += noFiles ? ", but not for another file" : "";
    finding.remedy = "Make room: without it records are lost.";
  } else if (room < 100 * mebibyte) {
    finding.level = Level::warning;
    finding.remedy = "Make room before records are lost.";
  }
  return finding;
}

Finding unknownRoomFinding(const std::string& folder, int error) {
  return {Level::warning, "disk", folder,
          "its room is not known: " + std::generic_category().message(error),
          "Look at it with df: where there is no room records are lost."};
}

}  // namespace wenlolib::tools
