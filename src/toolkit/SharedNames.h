/// The fixed names and numbers that the library shares with its hosts.
#ifndef WENLOLIB_TOOLKIT_SHAREDNAMES_H
#define WENLOLIB_TOOLKIT_SHAREDNAMES_H

#include <cstdint>
#include <string_view>

namespace wenlolib {

/// Begins the name of every preference and configuration file.
inline constexpr std::string_view VendorPrefix = "com.orvan.printing";

// What follows the vendor prefix in the names of the files.
inline constexpr std::string_view preferenceFile = ".Quillmere.Pref.plist";
inline constexpr std::string_view supportVersionListFile = ".Quillmere.SupportVersionList.plist";
inline constexpr std::string_view configurationFile = ".WENLOLIB.Conf.plist";

inline constexpr std::string_view hostBundlePath =
    "/Applications/Orvan Utilities/Quillmere/Quillmere.app";
inline constexpr std::string_view installedBundlePath =
    "/Library/Application Support/Orvan/Quillmere/Plugins/WENLOLIB.bundle";

inline constexpr std::string_view shortVersionKey = "CFBundleShortVersionString";
inline constexpr std::string_view bundleVersionKey = "CFBundleVersion";

/// The types of record.
inline constexpr std::uint32_t printerLogFileType = 1;
inline constexpr std::uint32_t applicationFileType = 2;

/// The mode: the low four bits, the only part of the word that is interpreted.
[[nodiscard]] constexpr std::uint32_t optionMode(std::uint32_t option) noexcept {
  return option & 15U;
}

/// Below this OS version, dates are formatted by calendar-format directives; from it on, they are
/// put together from components.
inline constexpr std::int32_t componentDatesOSVersion = 100900;

}  // namespace wenlolib

#endif
