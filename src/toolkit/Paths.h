/// Paths as plain text.
#ifndef WENLOLIB_TOOLKIT_PATHS_H
#define WENLOLIB_TOOLKIT_PATHS_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// The path of a file in the configuration folder, its name the vendor prefix followed by
/// `nameAfterPrefix`; null where the folder is not known.
[[nodiscard]] Text configurationPath(std::string_view nameAfterPrefix);

/// `path` with a leading "~" or "~/" replaced by the user's home folder. Other paths, and all paths
/// of a user without a home folder, stay as they are.
[[nodiscard]] Text homeExpanded(Text path);

}  // namespace wenlolib

#endif
