/// Where the running code came from.
#ifndef WENLOLIB_PLATFORM_LINUX_LOADEDFROM_H
#define WENLOLIB_PLATFORM_LINUX_LOADEDFROM_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform::gnulinux {

/// Where a bundle keeps its code for Linux.
inline constexpr std::string_view codeFolder = "/Contents/Linux";

/// The absolute path by which the shared object (or program) that holds this code was loaded; it
/// may lead through links. Null if it is not known.
[[nodiscard]] Text loadedFrom();

}  // namespace wenlolib::platform::gnulinux

#endif
