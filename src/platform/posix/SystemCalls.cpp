#include "platform/posix/SystemCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {

int SystemCalls::openFolder(const char* path) {
#ifdef O_PATH
  constexpr int access = O_PATH;  // a folder that may be written but not listed will do
#else
  constexpr int access = O_RDONLY;
#endif
  return aboveStandard(::open(path, access | O_DIRECTORY | O_CLOEXEC));
}

int SystemCalls::create(int folder, const char* name) {
  const int created =
      ::openat(folder, name, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  const int file = aboveStandard(created);
  if (created >= 0 && file < 0) {
    static_cast<void>(::unlinkat(folder, name, 0));
    errno = EMFILE;
  }
  return file;
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

bool SystemCalls::isDanglingLink(int folder, const char* name) {
  struct stat status {};
  return ::fstatat(folder, name, &status, 0) != 0 &&
         ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

}  // namespace wenlolib::platform::posix
