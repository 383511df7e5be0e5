/// Values and versions for a person, each on one line.
#ifndef WENLOLIB_TOOLS_VALUETEXT_H
#define WENLOLIB_TOOLS_VALUETEXT_H

#include <cstdint>
#include <string>

#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::tools {

/// With the type: `boolean true`, `integer 3`, `text "YES"`, `date 2024-03-15 09:05:07 +09:00`.
[[nodiscard]] std::string valueText(const Value& value);

/// The same, "nothing" for null.
[[nodiscard]] std::string valueText(const Value* value);

/// In local time with the offset from GMT.
[[nodiscard]] std::string instantText(Instant instant);

/// "10.17.0 (101700)"; "unknown" for -1.
[[nodiscard]] std::string versionText(std::int32_t number);

/// The same beside the text that it was read from: "3.1.0 (30100)"; "nothing" for null.
[[nodiscard]] std::string versionText(const Text& text, std::int32_t number);

}  // namespace wenlolib::tools

#endif
