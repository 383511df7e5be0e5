/// Folders, and the files in them, for the library's own use. Unlike the operations offered to
/// hosts these let a failed allocation through: a record must fail for lack of memory, not go
/// astray.
#ifndef WENLOLIB_TOOLKIT_FOLDERS_H
#define WENLOLIB_TOOLKIT_FOLDERS_H

#include <string>
#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

inline constexpr char groupContainerIdentifier[] = "K7MW2PL9QD.QX.common";

/// The app-group container; null where it cannot be determined. So are the folders below it.
[[nodiscard]] Text groupContainerFolder();

/// "Library/Application Support/QMR" in the container.
[[nodiscard]] Text supportFolder();

/// "PLM", "ALM" and "Config" in the support folder.
[[nodiscard]] Text printerLogFolder();
[[nodiscard]] Text applicationLogFolder();
[[nodiscard]] Text configurationFolder();

/// The path of a file in the configuration folder, its name the vendor prefix followed by
/// `nameAfterPrefix`; null where the folder is not known.
[[nodiscard]] Text configurationPath(std::string_view nameAfterPrefix);

/// `path` with a leading "~" or "~/" replaced by the user's home folder. Other paths, and all paths
/// of a user without a home folder, stay as they are.
[[nodiscard]] Text expandHome(Text path);

}  // namespace wenlolib

#endif
