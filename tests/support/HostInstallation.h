/// Installs a host that is allowed to record on an in-memory platform.
#ifndef WENLOLIB_TESTS_SUPPORT_HOSTINSTALLATION_H
#define WENLOLIB_TESTS_SUPPORT_HOSTINSTALLATION_H

#include <string>

#include "support/MemoryPlatform.h"
#include "wenlolib/Value.h"

namespace wenlolib::tests {

// The paths of the user "ada" on a system without container lookup. They are spelled out here
// again, so that a wrong name in the library is noticed.
inline const std::string container = "/Users/ada/Library/Group Containers/K7MW2PL9QD.QX.common";
inline const std::string supportFolder = container + "/Library/Application Support/QMR";
inline const std::string printerLogFolder = supportFolder + "/PLM";
inline const std::string applicationFolder = supportFolder + "/ALM";
inline const std::string configurationFolder = supportFolder + "/Config";
inline const std::string preferencePath =
    configurationFolder + "/com.orvan.printing.Quillmere.Pref.plist";
inline const std::string versionListPath =
    configurationFolder + "/com.orvan.printing.Quillmere.SupportVersionList.plist";
inline const std::string identifierPath =
    configurationFolder + "/com.orvan.printing.WENLOLIB.Conf.plist";
inline const std::string hostBundle = "/Applications/Orvan Utilities/Quillmere/Quillmere.app";
inline const std::string installedBundle =
    "/Library/Application Support/Orvan/Quillmere/Plugins/WENLOLIB.bundle";

inline constexpr double secondsADay = 86400.0;

/// Preferences of a host installed `days` before `now`, whose user agreed.
[[nodiscard]] Dictionary agreedPreferences(Instant now, double days);

/// Makes the folders of records and the configuration folder; preferences of a host installed 100
/// days ago whose user agreed and chose fr_FR; the bundles (host 2.1.4, installed library 3.0.1,
/// running library 3.1.0); and the configuration file with the identifier "{ID}".
void install(MemoryPlatform& platform);

}  // namespace wenlolib::tests

#endif
