/// The host's preference file.
#ifndef WENLOLIB_TOOLKIT_HOSTPREFERENCES_H
#define WENLOLIB_TOOLKIT_HOSTPREFERENCES_H

#include <optional>

#include "wenlolib/Value.h"

namespace wenlolib {

/// What the host's preference file holds, read anew at every call. Nothing when there is no such
/// file, a folder in its place, or no dictionary in it.
[[nodiscard]] std::optional<Dictionary> hostPreferences();

}  // namespace wenlolib

#endif
