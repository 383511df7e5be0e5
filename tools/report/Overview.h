/// What all records have in common, for a page that shows them: counts, groups, secrets.
#ifndef WENLOLIB_TOOLS_REPORT_OVERVIEW_H
#define WENLOLIB_TOOLS_REPORT_OVERVIEW_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/EnumTable.h"
#include "documents/DocumentText.h"
#include "reading/Redaction.h"
#include "records/OwnRecords.h"

namespace wenlolib::tools {

/// The records of one printer or one application.
struct RecordGroup {
  RecordKind kind = RecordKind::application;
  std::string label;
  std::vector<std::size_t> members;  // their places in the list of records
};

class Overview {
 public:
  /// Counts a record and notes its group in it.
  void add(const RecordReading& reading, OwnRecord& record);

  /// After the last record: puts all of them into their groups.
  void complete(const OwnRecords& found);

  /// Those of one kind by their labels.
  [[nodiscard]] const std::vector<RecordGroup>& groups() const { return groups_; }

  [[nodiscard]] std::uint64_t countOf(Condition condition) const { return counts_[condition]; }
  [[nodiscard]] std::uint64_t bytes() const { return bytes_; }

  /// Hides what identifies the user or a device in any of the records, since the same values turn
  /// up in others.
  [[nodiscard]] const Redaction& redaction() const { return redaction_; }

 private:
  EnumTable<Condition, std::uint64_t> counts_;
  std::uint64_t bytes_ = 0;
  Redaction redaction_;
  std::map<std::string, std::uint32_t> numbers_;  // of the groups, by what tells them apart
  std::vector<RecordGroup> groups_;
};

}  // namespace wenlolib::tools

#endif
