/// Looking things up in dictionaries.
#ifndef WENLOLIB_TOOLKIT_ENTRIES_H
#define WENLOLIB_TOOLKIT_ENTRIES_H

#include <optional>
#include <string_view>

#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib {

/// The value under `key`, or null. The pointer is good for as long as `dictionary`.
[[nodiscard]] const Value* entry(const std::optional<Dictionary>& dictionary, std::string_view key);

/// The text under `key`; null where there is none, or a value that is no text or not UTF-8.
[[nodiscard]] Text textEntry(const std::optional<Dictionary>& dictionary, std::string_view key);

}  // namespace wenlolib

#endif
