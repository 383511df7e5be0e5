/// The permissions of what the library makes.
#ifndef WENLOLIB_TOOLKIT_PERMISSIONS_H
#define WENLOLIB_TOOLKIT_PERMISSIONS_H

#include <cstdint>
#include <string>

namespace wenlolib {

/// Read and write for owner, group and others: every file that the library writes.
inline constexpr std::uint32_t openFileMode = 0666;

/// The owner alone.
inline constexpr std::uint32_t folderMode = 0700;

/// Opens up the file at `path`, as far as the platform does that: after a failed write the older
/// one, on purpose. Has no say in any answer.
void openPermissions(const std::string& path) noexcept;

}  // namespace wenlolib

#endif
