#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/posix/AtomicFile.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::posix {
namespace {

Kind kindOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return Kind::nothing;
  return S_ISDIR(status.st_mode) ? Kind::folder : Kind::other;
}

/// By the rights that the process acts with, where the system can tell.
bool canBeRun(const std::string& path) {
#ifdef __APPLE__
  return ::access(path.c_str(), X_OK) == 0;  // faccessat came late
#else
  return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
#endif
}

/// Asks first: setting the mode that a file has would still write to the file system's journal.
bool changeMode(const std::string& path, std::uint32_t mode) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && (status.st_mode & 07777) == mode) return true;
  return ::chmod(path.c_str(), static_cast<mode_t>(mode)) == 0;
}

/// One level. Its mode is set afterwards too, so that the file-creation mask has no say in it; some
/// file systems know no permissions, and there it stays as it is.
bool createLevel(const std::string& path, std::uint32_t mode) {
  if (::mkdir(path.c_str(), static_cast<mode_t>(mode)) == 0) {
    static_cast<void>(changeMode(path, mode));
    return true;
  }
  return errno == EEXIST && kindOf(path) == Kind::folder;
}

}  // namespace

Kind PosixFiles::kindAt(const std::string& path) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  return real ? kindOf(*real) : Kind::nothing;
}

bool PosixFiles::isExecutable(const std::string& path) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  return real && kindOf(*real) == Kind::other && canBeRun(*real);
}

Outcome PosixFiles::writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode, Publication publication) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  if (!real) return Outcome::failed;
  return posix::writeAtomically(calls_, *real, bytes, static_cast<mode_t>(mode), publication);
}

bool PosixFiles::setPermissions(const std::string& path, std::uint32_t mode) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  return real && changeMode(*real, mode);
}

bool PosixFiles::createFolder(const std::string& path, std::uint32_t mode) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  if (!real) return false;
  for (std::size_t end = 0; end < real->size();) {
    end = std::min(real->find('/', end + 1), real->size());
    const std::string level = real->substr(0, end);
    if (kindOf(level) != Kind::folder && !createLevel(level, mode)) return false;
  }
  return kindOf(*real) == Kind::folder;
}

}  // namespace wenlolib::platform::posix
