/// Property-list files that Core Foundation may be left to read.
#ifndef WENLOLIB_PLATFORM_APPLE_PROPERTYLISTFILE_H
#define WENLOLIB_PLATFORM_APPLE_PROPERTYLISTFILE_H

#include <optional>
#include <string>

namespace wenlolib::platform::apple {

/// All of a regular file in XML or binary form, of no more bytes and levels than Core Foundation's
/// reader gets through in bounded time and memory. Nothing for any other file; whether the list in
/// it is sound is not looked at. Throws as `posix::readWhole` does.
[[nodiscard]] std::optional<std::string> readPropertyListFile(const std::string& path);

}  // namespace wenlolib::platform::apple

#endif
