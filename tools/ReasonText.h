/// Why something failed, in words. Nothing here looks at the file system: what the platform said is
/// all that is told.
#ifndef WENLOLIB_TOOLS_REASONTEXT_H
#define WENLOLIB_TOOLS_REASONTEXT_H

#include <string>

#include "platform/PropertyLists.h"
#include "platform/Reason.h"

namespace wenlolib::tools {

/// The step and the system's error, such as "making the file failed: No space left on device".
[[nodiscard]] std::string reasonText(const platform::Reason& reason);

/// The same, and what to do about it where the error alone does not say it.
[[nodiscard]] std::string reasonWithAdvice(const platform::Reason& reason);

/// Why a file was not written, and what to do about it.
[[nodiscard]] std::string whyNotWritten(const platform::Reason& reason);

/// Whether there is no file at all.
[[nodiscard]] bool isMissing(const platform::ListReading& reading);

/// What is the matter with a property-list file, such as "is damaged: a key has no value (line 3)".
/// "" where all of it was read.
[[nodiscard]] std::string listTrouble(const platform::ListReading& reading);

}  // namespace wenlolib::tools

#endif
