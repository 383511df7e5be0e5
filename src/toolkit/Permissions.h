/// The permissions of what the library makes.
#ifndef WENLOLIB_TOOLKIT_PERMISSIONS_H
#define WENLOLIB_TOOLKIT_PERMISSIONS_H

#include <cstdint>
#include <string>

namespace wenlolib {

/// Read and write for owner, group and others: for every file that the library writes.
inline constexpr std::uint32_t openFileMode = 0666;

/// Everything for the owner alone: for every folder that the library makes.
inline constexpr std::uint32_t folderMode = 0700;

/// Opens up the file at `path`, if the platform can. After a failed write that is the older file,
/// on purpose. No result depends on whether this succeeds.
void openPermissions(const std::string& path) noexcept;

}  // namespace wenlolib

#endif
