/// The examinations of an installation. Each works on the platform in use, which is to be
/// `platform`, and changes nothing that it is not asked to.
#ifndef WENLOLIB_TOOLS_DOCTOR_CHECKS_H
#define WENLOLIB_TOOLS_DOCTOR_CHECKS_H

#include <sys/statvfs.h>

#include <string>

#include "doctor/Findings.h"
#include "library/ToolPlatform.h"

namespace wenlolib::tools {

/// The folders of records and of configuration.
void checkFolders(const ToolPlatform& platform, Findings& findings);

/// The files in the configuration folder.
void checkPreferences(const ToolPlatform& platform, Findings& findings);
void checkSupportList(const ToolPlatform& platform, Findings& findings);
void checkIdentifier(const ToolPlatform& platform, Findings& findings);

/// The versions that records carry, and whether records are allowed.
void checkVersions(const ToolPlatform& platform, Findings& findings);
void checkDecisions(Findings& findings);

/// Files that were left unfinished; with `clean` those that are a day old are removed.
void checkLeftovers(const ToolPlatform& platform, bool clean, Findings& findings);

/// Numbers of printer logs that are taken, room on the disk.
void checkNumbers(const ToolPlatform& platform, Findings& findings);
void checkDisk(const ToolPlatform& platform, Findings& findings);

/// Whether the records of `folder` find room on its file system.
[[nodiscard]] Finding roomFinding(const std::string& folder, const struct statvfs& disk);

/// The same where the file system did not answer; `error` is its errno.
[[nodiscard]] Finding unknownRoomFinding(const std::string& folder, int error);

}  // namespace wenlolib::tools

#endif
