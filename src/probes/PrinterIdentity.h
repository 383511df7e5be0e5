/// The printer's identity, as a host hands it over with a printer log.
#ifndef WENLOLIB_PROBES_PRINTERIDENTITY_H
#define WENLOLIB_PROBES_PRINTERIDENTITY_H

#include <optional>
#include <string>
#include <string_view>

#include "wenlolib/Value.h"

namespace wenlolib {

inline constexpr std::string_view deviceIdKey = "DeviceID";
inline constexpr std::string_view serialNumberKey = "SN";
inline constexpr std::string_view romVersionKey = "ROMVER";
inline constexpr std::string_view newTagTypeKey = "NEWTAGTYPE";

/// The text under `key` as it stands; "" where it is absent or no text.
[[nodiscard]] std::string identityText(const std::optional<Dictionary>& otherInfo,
                                       std::string_view key);

/// Whether the printer uses the newer document layout: the boolean reading of "NEWTAGTYPE". A text
/// is true when after leading white space, one sign and zeros it begins with Y, y, T, t or a digit
/// 1 to 9. False where the entry is absent, or neither boolean, number nor text.
[[nodiscard]] bool hasNewTagType(const std::optional<Dictionary>& otherInfo);

}  // namespace wenlolib

#endif
