/// Deleting the user's own records, and the identifier that ties them together.
#ifndef WENLOLIB_TOOLS_RECORDS_REMOVAL_H
#define WENLOLIB_TOOLS_RECORDS_REMOVAL_H

#include <string>

#include "library/ToolPlatform.h"
#include "records/OwnRecords.h"

namespace wenlolib::tools {

/// Deletes the file of a record if it is still the one that was read. No folder on the way down
/// from `folder` may be a link. "" if it is gone, else why it was left.
[[nodiscard]] std::string removeRecord(const std::string& folder, const OwnRecord& record);

enum class IdentifierState { none, stored, kept };

/// The configuration file's identifier. `kept`: it is there, but the file cannot be changed without
/// a loss, or what is there cannot be made out; `why` says so.
struct StoredIdentifier {
  IdentifierState state = IdentifierState::none;
  std::string path;  // of the file
  std::string why;
  bool unreadable = false;  // the system did not let the file be read
};

[[nodiscard]] StoredIdentifier findIdentifier(const ToolPlatform& platform);

/// Removes the identifier and keeps the file's other entries, so that the next record makes another
/// one. "" if it is gone, else why it was left.
[[nodiscard]] std::string removeIdentifier(const ToolPlatform& platform);

}  // namespace wenlolib::tools

#endif
