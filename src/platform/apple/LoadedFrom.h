/// Where the running code came from.
#ifndef WENLOLIB_PLATFORM_APPLE_LOADEDFROM_H
#define WENLOLIB_PLATFORM_APPLE_LOADEDFROM_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform::apple {

/// Where a bundle keeps what macOS runs.
inline constexpr std::string_view codeFolder = "/Contents/MacOS";

/// The path by which the image was loaded that this code is part of: the host's own words, perhaps
/// relative, perhaps over links. Null when it cannot be told.
[[nodiscard]] Text loadedFrom();

}  // namespace wenlolib::platform::apple

#endif
