/// Folders, and the files in them, for the library's own use. Unlike the operations offered to
/// hosts, these let a failed allocation through: for lack of memory a record must fail, not go to
/// the wrong place.
#ifndef WENLOLIB_TOOLKIT_FOLDERS_H
#define WENLOLIB_TOOLKIT_FOLDERS_H

#include <string>
#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

inline constexpr char groupContainerIdentifier[] = "K7MW2PL9QD.QX.common";

/// The app-group container; null if it cannot be determined, and then so are the folders below it.
[[nodiscard]] Text groupContainerFolder();

/// "Library/Application Support/QMR" in the container.
[[nodiscard]] Text supportFolder();

/// "PLM", "ALM" and "Config" in the support folder.
[[nodiscard]] Text printerLogFolder();
[[nodiscard]] Text applicationLogFolder();
[[nodiscard]] Text configurationFolder();

/// The path of the file in the configuration folder whose name is the vendor prefix followed by
/// `nameAfterPrefix`; null if the folder is not known.
[[nodiscard]] Text configurationPath(std::string_view nameAfterPrefix);

/// `path` with a leading "~" or "~/" replaced by the user's home folder. Other paths, and all paths
/// of a user without a home folder, stay as they are.
[[nodiscard]] Text expandHome(Text path);

}  // namespace wenlolib

#endif
