/// Why a file could not be written.
#ifndef WENLOLIB_TOOLS_WRITEFAILURE_H
#define WENLOLIB_TOOLS_WRITEFAILURE_H

#include <string>

namespace wenlolib::tools {

/// What stands in the way of a file at `path`, as far as a look afterwards can tell.
[[nodiscard]] std::string whyNotWritten(const std::string& path);

}  // namespace wenlolib::tools

#endif
