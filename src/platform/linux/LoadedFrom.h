/// Where the running code came from.
#ifndef WENLOLIB_PLATFORM_LINUX_LOADEDFROM_H
#define WENLOLIB_PLATFORM_LINUX_LOADEDFROM_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::platform::gnulinux {

/// Where a bundle keeps what Linux runs.
inline constexpr std::string_view codeFolder = "/Contents/Linux";

/// The absolute path by which the shared object (or program) that this code is part of was loaded;
/// it may lead over links. Null when it cannot be told.
[[nodiscard]] Text loadedFrom();

}  // namespace wenlolib::platform::gnulinux

#endif
