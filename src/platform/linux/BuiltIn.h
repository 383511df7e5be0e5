/// What is built into this library.
#ifndef WENLOLIB_PLATFORM_LINUX_BUILTIN_H
#define WENLOLIB_PLATFORM_LINUX_BUILTIN_H

#include <string>

namespace wenlolib::platform::gnulinux {

/// The libraries of others that this build contains, a line each: name and version, and behind them
/// the package of the distribution that they were taken from, where that is known.
[[nodiscard]] std::string builtInLibraries();

}  // namespace wenlolib::platform::gnulinux

#endif
