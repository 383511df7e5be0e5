/// The host's preferences, and looking things up in dictionaries.
#ifndef WENLOLIB_TOOLKIT_PREFERENCES_H
#define WENLOLIB_TOOLKIT_PREFERENCES_H

#include <optional>
#include <string_view>

#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib {

inline constexpr std::string_view installedDateKey = "InstalledDate";
inline constexpr std::string_view agreementKey = "LatestSelectedAgreement";
inline constexpr std::string_view languageKey = "LatestSelectedLanguage";

/// What the host's preference file holds, read again at every call. Nothing if there is no such
/// file, if a folder is in its place, or if it holds no dictionary.
[[nodiscard]] std::optional<Dictionary> hostPreferences();

/// The value under `key`, or null. The pointer is valid as long as `dictionary`.
[[nodiscard]] const Value* entry(const std::optional<Dictionary>& dictionary, std::string_view key);

/// The text under `key`; null if there is none, or if the value is not text or not UTF-8.
[[nodiscard]] Text textEntry(const std::optional<Dictionary>& dictionary, std::string_view key);

}  // namespace wenlolib

#endif
