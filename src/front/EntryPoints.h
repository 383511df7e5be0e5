/// The two calls by which a host records, for the faces that convert what they are handed.
#ifndef WENLOLIB_FRONT_ENTRYPOINTS_H
#define WENLOLIB_FRONT_ENTRYPOINTS_H

#include <cstdint>
#include <optional>

#include "base/Answered.h"
#include "toolkit/Names.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {

/// What a host hands over with a record.
struct RecordArguments {
  Text contents;
  Text name;
  std::optional<Dictionary> otherInfo;
};

/// Builds the record and writes it; false without contents or a name.
[[nodiscard]] bool written(RecordArguments arguments, std::uint32_t option, std::uint32_t fileType);

// `given` answers the arguments. It is asked once recording turns out to be allowed, and not
// before: a refused call looks at nothing of what it was handed, and copies nothing.

template <class Given>
[[nodiscard]] bool recordApplicationUsage(std::uint32_t option, const Given& given) noexcept {
  return WENLOLIB::isSupported(option) &&
         answered(false, [&] { return written(given(), option, applicationFileType); });
}

template <class Given>
[[nodiscard]] bool recordPrinterLog(std::uint32_t option, const Given& given) noexcept {
  return WENLOLIB::isSupportedPlm(option) &&
         answered(false, [&] { return written(given(), option, printerLogFileType); });
}

}  // namespace wenlolib

#endif
