/// The examination of an installation: the checks, and what they find.
#ifndef WENLOLIB_TOOLS_DOCTOR_EXAMINATION_H
#define WENLOLIB_TOOLS_DOCTOR_EXAMINATION_H

#include <sys/statvfs.h>

#include <cstdint>
#include <string>
#include <vector>

#include "library/ToolPlatform.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

enum class Level : std::uint8_t { ok, warning, error };

struct Finding {
  Level level = Level::ok;
  std::string check;    // what was looked at, a code that never changes
  std::string subject;  // the file, folder or other thing
  std::string message;
  std::string remedy;  // "" if nothing is to be done
};

using Findings = std::vector<Finding>;

[[nodiscard]] bool hasErrors(const Findings& findings);

/// For a person, in lines of the text's width. `supportFolder` is shown once, and shortened where a
/// subject begins with it; "" for none.
[[nodiscard]] std::string findingsText(const Findings& findings, const Style& style,
                                       const std::string& supportFolder);

/// One JSON object on each line.
[[nodiscard]] std::string findingsJson(const Findings& findings);

struct ExaminationOptions {
  bool clean = false;  // remove unfinished files that are at least a day old
  std::string plugin;  // a bundle or its shared object; "" for that of this installation
};

/// All checks, on the platform in use, which must be `platform`. Changes nothing without `clean`.
[[nodiscard]] Findings examine(const ToolPlatform& platform, const ExaminationOptions& options);

// The single checks.

/// The folders of records and of configuration.
void checkFolders(const ToolPlatform& platform, Findings& findings);

/// The files in the configuration folder.
void checkPreferences(const ToolPlatform& platform, Findings& findings);
void checkSupportList(const ToolPlatform& platform, Findings& findings);
void checkIdentifier(const ToolPlatform& platform, Findings& findings);

/// The versions that records carry, and whether records are allowed.
void checkVersions(const ToolPlatform& platform, Findings& findings);
void checkDecisions(Findings& findings);

/// The plug-in that hosts would load: the bundle or shared object at a path, or for "" the one that
/// was installed with this command.
void checkPlugin(const std::string& wanted, Findings& findings);

/// Unfinished files; with `clean` those that are at least a day old are removed.
void checkLeftovers(const ToolPlatform& platform, bool clean, Findings& findings);

/// The numbers of printer logs that are taken, and the room on the disk.
void checkNumbers(const ToolPlatform& platform, Findings& findings);
void checkDisk(const ToolPlatform& platform, Findings& findings);

/// Whether the file system of `folder` has room for records.
[[nodiscard]] Finding roomFinding(const std::string& folder, const struct statvfs& disk);

/// The same if the file system did not answer; `error` is its errno.
[[nodiscard]] Finding unknownRoomFinding(const std::string& folder, int error);

}  // namespace wenlolib::tools

#endif
