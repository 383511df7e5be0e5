/// The values that a survey document carries in its header.
#ifndef WENLOLIB_RECORD_HEADERVALUES_H
#define WENLOLIB_RECORD_HEADERVALUES_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "wenlolib/Value.h"

namespace wenlolib {

// --- Versions ---

/// The first two components of a version: "1.2.3" gives "1.2". A version without a point, or with
/// nothing after its first one, gives "".
[[nodiscard]] std::string twoComponents(std::string_view version);

/// The host application's version. The installed library's version is used only if there is no host
/// bundle at all: a host bundle without a version gives "", on purpose.
[[nodiscard]] std::string clientVersion();

/// The version of the bundle that this library was loaded from.
[[nodiscard]] std::string libraryVersion();

/// "M." and the OS version, or "".
[[nodiscard]] std::string markedOSVersion();

// --- The user's locale ---

/// `locale` without its modifier ("@" and what follows), and cut before its second "_". Texts
/// longer than 32,767 characters give "".
[[nodiscard]] std::string normalisedLocale(std::string locale);

/// The locale for an option word. The low four bits choose the source: 1 for the language last
/// selected in the host, with nothing to fall back on; 0 and 2 for the user's own setting; other
/// values for none.
[[nodiscard]] std::string surveyLocale(std::uint32_t option);

// --- The printer's identity, as a host passes it with a printer log ---

inline constexpr std::string_view deviceIdKey = "DeviceID";
inline constexpr std::string_view serialNumberKey = "SN";
inline constexpr std::string_view romVersionKey = "ROMVER";
inline constexpr std::string_view newTagTypeKey = "NEWTAGTYPE";

/// The text under `key` as it stands; "" if it is absent or not text.
[[nodiscard]] std::string identityText(const std::optional<Dictionary>& otherInfo,
                                       std::string_view key);

/// Whether the printer uses the newer document layout: the truth value of "NEWTAGTYPE". A text is
/// true if, after leading white space, at most one sign and any zeros, it continues with Y, y, T, t
/// or a digit 1 to 9. False if the entry is absent, or is not a boolean, number or text.
[[nodiscard]] bool hasNewTagType(const std::optional<Dictionary>& otherInfo);

}  // namespace wenlolib

#endif
