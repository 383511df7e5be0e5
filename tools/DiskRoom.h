/// What a file system says of the room on it.
#ifndef WENLOLIB_TOOLS_DISKROOM_H
#define WENLOLIB_TOOLS_DISKROOM_H

#include <sys/statvfs.h>

#include <string>

#include "Findings.h"

namespace wenlolib::tools {

/// Whether the records of `folder` find room on its file system.
[[nodiscard]] Finding roomFinding(const std::string& folder, const struct statvfs& disk);

/// The same where the file system did not answer; `error` is its errno.
[[nodiscard]] Finding unknownRoomFinding(const std::string& folder, int error);

}  // namespace wenlolib::tools

#endif
