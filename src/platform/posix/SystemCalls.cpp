#include "platform/posix/SystemCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {

int SystemCalls::openFolder(const char* path) {
#ifdef O_PATH
  constexpr int access = O_PATH;  // enough for a folder that may be written to but not listed
#else
  constexpr int access = O_RDONLY;
#endif
  return aboveStandard(::open(path, access | O_DIRECTORY | O_CLOEXEC));
}

int SystemCalls::create(int folder, const char* name) {
  constexpr int access = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  return madeAboveStandard([&] { return ::openat(folder, name, access, 0600); },
                           [&] { static_cast<void>(::unlinkat(folder, name, 0)); });
}

int SystemCalls::open(int folder, const char* name) {
  constexpr int access = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  return aboveStandard(::openat(folder, name, access));
}

ssize_t SystemCalls::write(int file, const void* bytes, std::size_t length) {
  return ::write(file, bytes, length);
}

int SystemCalls::changeMode(int file, mode_t mode) {
  return ::fchmod(file, mode);
}

int SystemCalls::flush(int file) {
  return ::fsync(file);
}

int SystemCalls::lock(int file) {
  return ::flock(file, LOCK_EX | LOCK_NB);
}

int SystemCalls::close(int file) {
  return ::close(file);
}

int SystemCalls::rename(int folder, const char* from, const char* to) {
  return ::renameat(folder, from, folder, to);
}

int SystemCalls::renameWithoutReplacing(int folder, const char* from, const char* to) {
#if defined(RENAME_NOREPLACE)
  return ::renameat2(folder, from, folder, to, RENAME_NOREPLACE);
#elif defined(RENAME_EXCL)
  return ::renameatx_np(folder, from, folder, to, RENAME_EXCL);
#else
  static_cast<void>(folder), static_cast<void>(from), static_cast<void>(to);
  errno = ENOSYS;
  return -1;
#endif
}

int SystemCalls::link(int folder, const char* from, const char* to) {
  return ::linkat(folder, from, folder, to, 0);
}

int SystemCalls::remove(int folder, const char* name) {
  return ::unlinkat(folder, name, 0);
}

int SystemCalls::status(int folder, const char* name, Links links, struct stat& status) {
  return ::fstatat(folder, name, &status, links == Links::followed ? 0 : AT_SYMLINK_NOFOLLOW);
}

}  // namespace wenlolib::platform::posix
