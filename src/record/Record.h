/// The record behind `WENLOLIB`, for the faces of other languages: its fields, its two steps, and
/// the two calls by which a host records.
#ifndef WENLOLIB_RECORD_RECORD_H
#define WENLOLIB_RECORD_RECORD_H

#include <cstdint>
#include <optional>

#include "base/Answered.h"
#include "platform/Time.h"
#include "toolkit/Names.h"
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
  platform::Calendar* _calendar = nullptr;  // the face's own; else the platform's
};

[[nodiscard]] constexpr bool isFileType(std::uint32_t type) noexcept {
  return type == printerLogFileType || type == applicationFileType;
}

/// What `WENLOLIBCreateXMLDocument` and `writeAppInfo` do.
[[nodiscard]] bool createDocument(RecordFields& record) noexcept;
[[nodiscard]] bool writeRecord(RecordFields& record) noexcept;

/// What a host hands over with a record.
struct RecordArguments {
  Text contents;
  Text name;
  std::optional<Dictionary> otherInfo;
};

/// Builds the record and writes it; false without contents or a name.
[[nodiscard]] bool record(RecordArguments arguments, std::uint32_t option, std::uint32_t fileType);

// `given` answers the arguments. It is asked once recording turns out to be allowed, and not
// before: a refused call looks at nothing of what it was handed, and copies nothing.

template <class Given>
[[nodiscard]] bool recordApplicationUsage(std::uint32_t option, const Given& given) noexcept {
  return WENLOLIB::isSupported(option) &&
         answered(false, [&] { return record(given(), option, applicationFileType); });
}

template <class Given>
[[nodiscard]] bool recordPrinterLog(std::uint32_t option, const Given& given) noexcept {
  return WENLOLIB::isSupportedPlm(option) &&
         answered(false, [&] { return record(given(), option, printerLogFileType); });
}

}  // namespace wenlolib

#endif
