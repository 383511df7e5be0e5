/// Files that appear whole or not at all.
#ifndef WENLOLIB_PLATFORM_POSIX_ATOMICFILE_H
#define WENLOLIB_PLATFORM_POSIX_ATOMICFILE_H

#include <string>
#include <string_view>

#include "platform/Files.h"
#include "platform/posix/SystemCalls.h"

namespace wenlolib::platform::posix {

/// The beginning of the name of every unfinished file. Such a file stands in the folder of its
/// target. One that stays there for long was left by a process that was killed, and can be deleted.
inline constexpr std::string_view unfinishedPrefix = ".wenlolib-";
inline constexpr std::string_view unfinishedSuffix = ".tmp";

[[nodiscard]] inline bool isUnfinished(std::string_view name) {
  return name.starts_with(unfinishedPrefix) && name.ends_with(unfinishedSuffix);
}

/// Writes a new file beside `path`, hidden and under a name that nobody can guess, flushes it to
/// the disk and gives it its name in one step. See `Files::writeAtomically`.
[[nodiscard]] Outcome writeAtomically(SystemCalls& calls, const std::string& path,
                                      std::string_view bytes, mode_t mode, Publication publication);

}  // namespace wenlolib::platform::posix

#endif
