/// What is built into this library.
#ifndef WENLOLIB_PLATFORM_LINUX_BUILTIN_H
#define WENLOLIB_PLATFORM_LINUX_BUILTIN_H

#include <string>

namespace wenlolib::platform::gnulinux {

/// The third-party libraries that this build contains, one per line: name and version, followed by
/// the distribution package that they were taken from, if that is known.
[[nodiscard]] std::string builtInLibraries();

}  // namespace wenlolib::platform::gnulinux

#endif
