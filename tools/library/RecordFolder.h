/// The folders that records go into, and what would keep an allowed record from being written
/// there.
#ifndef WENLOLIB_TOOLS_LIBRARY_RECORDFOLDER_H
#define WENLOLIB_TOOLS_LIBRARY_RECORDFOLDER_H

#include <map>
#include <string>
#include <vector>

#include "library/ToolPlatform.h"
#include "policy/RecordingGates.h"

namespace wenlolib::tools {

/// What a record meets after the decision.
struct Obstacle {
  std::string code;  // never changes
  bool stops;        // the record fails; if not, it replaces another
  std::string path;
  std::string message;
  std::string remedy;
};

/// What an allowed record of this kind would meet now, on the platform in use, which must be
/// `platform`. It fails if the first obstacle stops it.
[[nodiscard]] std::vector<Obstacle> obstacles(const ToolPlatform& platform, RecordKind kind);

/// How many numbers of printer logs are taken in a folder, by name.
[[nodiscard]] std::map<std::string, int> takenNumbers(const std::string& folder);

/// What to do about numbers that run out.
[[nodiscard]] std::string numbersRemedy();

/// A folder that is missing or cannot be examined, by the system's error number.
[[nodiscard]] std::string absentFolderText(int error);
[[nodiscard]] std::string absentFolderRemedy(int error);

/// A folder in which no file can be made: in the words of a record that fails there.
[[nodiscard]] std::string lockedFolderText(int error);
[[nodiscard]] std::string lockedFolderRemedy(int error);

}  // namespace wenlolib::tools

#endif
