/// Where the running code came from.
#ifndef WENLOLIB_PLATFORM_APPLE_LOADEDFROM_H
#define WENLOLIB_PLATFORM_APPLE_LOADEDFROM_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform::apple {

/// Where a bundle keeps its code for macOS.
inline constexpr std::string_view codeFolder = "/Contents/MacOS";

/// The path by which the image that holds this code was loaded, as the host gave it: it may be
/// relative and may lead through links. Null if it is not known.
[[nodiscard]] Text loadedFrom();

}  // namespace wenlolib::platform::apple

#endif
