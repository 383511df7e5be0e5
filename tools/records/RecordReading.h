/// One of the user's own records: reading its file, and what it says that it is found by.
#ifndef WENLOLIB_TOOLS_RECORDS_RECORDREADING_H
#define WENLOLIB_TOOLS_RECORDS_RECORDREADING_H

#include <sys/stat.h>

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include "policy/RecordingGates.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

/// Tells a file from another one, and from itself with other contents.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::uint64_t size = 0;
  std::int64_t modified = 0;  // in nanoseconds
  std::int64_t changed = 0;

  FileState() = default;
  explicit FileState(const struct stat& status);
  friend bool operator==(const FileState&, const FileState&) = default;
};

/// What records are chosen and listed by.
struct RecordFacts {
  std::time_t date = 0;
  bool dated = false;  // by the document; else the date is that of the file's last change
  RecordKind kind = RecordKind::application;
  std::string name;      // that the host gave, taken from the file's name
  std::string deviceId;  // of a printer log, if it says so
  std::string serialNumber;

  /// The model from the device identifier, and the serial number; "" for neither.
  [[nodiscard]] std::string printer() const;
};

/// A file of the user's, read and examined. `report` points into the buffer.
struct RecordReading {
  FileState state;
  receiver::Report report;
  RecordFacts facts;
  std::string complaint;    // why this is not a record, or cannot be read; else ""
  bool unreadable = false;  // it cannot be read, so it may be a record
  bool vanished = false;    // it was removed in the meantime
};

/// Reads the file at `folder` + `place`; `place` begins with the name of its folder, "PLM/" or
/// "ALM/". Does not follow a link at the end. The buffer can be used again for the next one.
[[nodiscard]] RecordReading readRecord(const std::string& folder, const std::string& place,
                                       std::string& buffer);

/// Whether the bytes are a document of this library, sound or not: its outermost element is one of
/// the wrappers, as far as its beginning or its end can tell.
[[nodiscard]] bool isOurs(std::string_view bytes);

}  // namespace wenlolib::tools

#endif
