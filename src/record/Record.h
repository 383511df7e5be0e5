/// The record inside `WENLOLIB`, for the interfaces in other languages: its fields, its two steps,
/// and the call with which a host records.
#ifndef WENLOLIB_RECORD_RECORD_H
#define WENLOLIB_RECORD_RECORD_H

#include <cstdint>
#include <optional>

#include "platform/Time.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {

struct RecordFields {
  Text _xmlContents;
  Text _applicationName;
  std::uint32_t _options = 0;
  std::uint32_t _fileType = printerLogFileType;
  Text _pathToPrefFile;                       // reserved: never assigned
  std::optional<Dictionary> _prefDictionary;  // reserved: never assigned
  Text _xmlDocment;                           // from document creation until the file is written
  std::optional<Dictionary> _otherInfoDict;
  Text _libUUID;                            // the installation identifier, once asked for
  platform::Calendar* _calendar = nullptr;  // the interface's own; else the platform's
};

[[nodiscard]] constexpr bool isFileType(std::uint32_t type) noexcept {
  return type == printerLogFileType || type == applicationFileType;
}

/// What `WENLOLIBCreateXMLDocument` and `writeAppInfo` do.
[[nodiscard]] bool createDocument(RecordFields& record) noexcept;
[[nodiscard]] bool writeRecord(RecordFields& record) noexcept;

/// Writes a record of what a host passes. It is called only once recording is known to be allowed:
/// before that, nothing is looked at and nothing is copied. False without contents or a name.
[[nodiscard]] bool writeContents(Text contents, Text name, std::uint32_t option,
                                 std::uint32_t fileType, std::optional<Dictionary> otherInfo);

}  // namespace wenlolib

#endif
