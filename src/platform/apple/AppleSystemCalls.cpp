#include "platform/apple/AppleSystemCalls.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/param.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "platform/apple/Objects.h"
#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::apple {
namespace {

/// Both calls came with 10.10.
bool takesFolders() {
  return isOffered("openat") && isOffered("renameat");
}

/// The path of `name` in an open folder; "" if the system cannot tell.
std::string pathOf(int folder, const char* name) {
  std::array<char, MAXPATHLEN> path{};
  if (::fcntl(folder, F_GETPATH, path.data()) != 0) return "";
  return std::string(path.data()) + "/" + name;
}

}  // namespace

int AppleSystemCalls::create(int folder, const char* name) {
  if (takesFolders()) return SystemCalls::create(folder, name);
  const std::string path = pathOf(folder, name);
  constexpr int access = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  return posix::madeAboveStandard([&] { return ::open(path.c_str(), access, 0600); },
                                  [&] { static_cast<void>(::unlink(path.c_str())); });
}

int AppleSystemCalls::open(int folder, const char* name) {
  if (takesFolders()) return SystemCalls::open(folder, name);
  constexpr int access = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
  return posix::aboveStandard(::open(pathOf(folder, name).c_str(), access));
}

int AppleSystemCalls::flush(int file) {
  // On macOS, fsync leaves the bytes in the drive's own cache, and they may reach the disk after
  // the new name does. File systems without the full flush still have fsync.
  const int flushed = ::fcntl(file, F_FULLFSYNC);
  return flushed == 0 || errno == EINTR ? flushed : SystemCalls::flush(file);
}

int AppleSystemCalls::rename(int folder, const char* from, const char* to) {
  if (takesFolders()) return SystemCalls::rename(folder, from, to);
  return ::rename(pathOf(folder, from).c_str(), pathOf(folder, to).c_str());
}

int AppleSystemCalls::renameWithoutReplacing(int folder, const char* from, const char* to) {
  // This call is newer: it came with 10.12.
  if (isOffered("renameatx_np")) return SystemCalls::renameWithoutReplacing(folder, from, to);
  errno = ENOSYS;
  return -1;
}

int AppleSystemCalls::link(int folder, const char* from, const char* to) {
  if (takesFolders()) return SystemCalls::link(folder, from, to);
  return ::link(pathOf(folder, from).c_str(), pathOf(folder, to).c_str());
}

int AppleSystemCalls::remove(int folder, const char* name) {
  if (takesFolders()) return SystemCalls::remove(folder, name);
  return ::unlink(pathOf(folder, name).c_str());
}

int AppleSystemCalls::status(int folder, const char* name, posix::Links links,
                             struct stat& status) {
  if (takesFolders()) return SystemCalls::status(folder, name, links, status);
  const std::string path = pathOf(folder, name);
  return links == posix::Links::followed ? ::stat(path.c_str(), &status)
                                         : ::lstat(path.c_str(), &status);
}

}  // namespace wenlolib::platform::apple
