/// Reading files that somebody else has written.
#ifndef WENLOLIB_PLATFORM_POSIX_WHOLEFILE_H
#define WENLOLIB_PLATFORM_POSIX_WHOLEFILE_H

#include <cstddef>
#include <optional>
#include <string>

#include "platform/Reason.h"

namespace wenlolib::platform::posix {

/// All of a file, or why there is nothing.
struct WholeFile {
  std::optional<std::string> bytes;
  /// EFBIG for a file beyond the bound, EISDIR for a folder, 0 for what is neither file nor folder.
  Reason reason;
};

/// All of a regular file of at most `bound` bytes, links followed. Nothing for anything else: no
/// file, a larger one, a folder, a device, a pipe (which is not waited for), one that this user may
/// not read. Throws NoAnswer if the system cannot answer (see Errors.h): a lack of memory or
/// descriptors, a failed read, a lease on the file that was not given up within a second.
[[nodiscard]] WholeFile readWhole(const std::string& path, std::size_t bound);

}  // namespace wenlolib::platform::posix

#endif
