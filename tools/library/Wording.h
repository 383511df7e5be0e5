/// Reasons, values and versions in words. Nothing here looks at the file system: they come
/// from what the platform said.
#ifndef WENLOLIB_TOOLS_LIBRARY_WORDING_H
#define WENLOLIB_TOOLS_LIBRARY_WORDING_H

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/PropertyLists.h"
#include "platform/Reason.h"
#include "policy/RecordingGates.h"
#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::tools {

/// A kind of record as JSON names it: "application" or "printer".
[[nodiscard]] std::string_view recordCode(RecordKind kind);

/// The step and the system's error, such as "making the file failed: No space left on device".
[[nodiscard]] std::string reasonText(const platform::Reason& reason);

/// The same, and what to do about it if the error alone does not say so.
[[nodiscard]] std::string reasonWithAdvice(const platform::Reason& reason);

/// Why a file was not written, and what to do about it.
[[nodiscard]] std::string whyNotWritten(const platform::Reason& reason);

/// Whether there is no file at all.
[[nodiscard]] bool isMissing(const platform::ListReading& reading);

/// What is wrong with a property-list file, such as "damaged: a key has no value (line 3)".
/// "" if all of it was read.
[[nodiscard]] std::string listTrouble(const platform::ListReading& reading);

/// What to do about a preference file without a dictionary, and about such a support version list.
[[nodiscard]] std::string preferencesRemedy(const platform::ListReading& reading);
[[nodiscard]] std::string supportListRemedy(const platform::ListReading& reading);

/// With the type: `boolean true`, `integer 3`, `text "YES"`, `date 2024-03-15 09:05:07 +09:00`.
[[nodiscard]] std::string valueText(const Value& value);

/// The same; "not set" for null.
[[nodiscard]] std::string valueText(const Value* value);

/// In local time with the offset from GMT.
[[nodiscard]] std::string instantText(Instant instant);

/// "10.17.0 (101700)"; "unknown" for -1.
[[nodiscard]] std::string versionText(std::int32_t number);

/// The same with the text that it was read from: `"3.1.0" (30100)`; "nothing" for null.
[[nodiscard]] std::string versionText(const Text& text, std::int32_t number);

/// A path on one line. `supportFolder` is shortened to "QMR" where the path begins with it; "" for
/// none.
[[nodiscard]] std::string shortPath(const std::string& path, const std::string& supportFolder);

/// Says what is shortened; "" if nothing is.
[[nodiscard]] std::string shortFolderText(const std::string& supportFolder);

}  // namespace wenlolib::tools

#endif
