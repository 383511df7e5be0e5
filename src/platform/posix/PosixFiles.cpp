#include "platform/posix/PosixFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "base/Integer.h"
#include "platform/posix/AtomicFile.h"
#include "platform/posix/Errors.h"
#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {
namespace {

/// Throws if the system cannot answer: otherwise what is at the path would count as nothing.
Kind kindOf(const std::string& path) {
  struct stat status {};
  if (uninterrupted([&] { return ::stat(path.c_str(), &status); }) != 0) {
    throwUnlessAnswer(Step::findFile, errno);
    return Kind::nothing;
  }
  return S_ISDIR(status.st_mode) ? Kind::folder : Kind::other;
}

/// Judged by the rights that the process acts with, if the system can tell.
bool canBeRun(const std::string& path) {
#ifdef __APPLE__
  return ::access(path.c_str(), X_OK) == 0;  // faccessat came late
#else
  return ::faccessat(AT_FDCWD, path.c_str(), X_OK, AT_EACCESS) == 0;
#endif
}

/// Whether a regular file has only one name: a second one might belong to anybody.
bool hasOneName(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

/// Changes the mode of what is at the path itself, never of what a link there leads to.
#ifdef __APPLE__
bool changeModeThere(const std::string& path, mode_t mode) {
  return ::lchmod(path.c_str(), mode) == 0;
}
#else
bool changeModeThere(const std::string& path, mode_t mode) {
  const int file = aboveStandard(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (file < 0) return false;
  struct stat status {};
  const std::string opened = "/proc/self/fd/" + decimal(file);
  const bool changed =
      ::fstat(file, &status) == 0 && hasOneName(status) && ::chmod(opened.c_str(), mode) == 0;
  static_cast<void>(::close(file));
  return changed;
}
#endif

/// Checks first: setting the mode that a file already has would still write to the file system's
/// journal.
bool openUp(const std::string& path, mode_t mode) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0 || !hasOneName(status)) return false;
  return (status.st_mode & 07777) == mode || changeModeThere(path, mode);
}

/// Creates one level. Its mode is also set afterwards, because the file-creation mask must not
/// affect it. On a file system without permissions it stays as it is.
Reason createLevel(const std::string& path, std::uint32_t mode) {
  if (::mkdir(path.c_str(), static_cast<mode_t>(mode)) == 0) {
    static_cast<void>(::chmod(path.c_str(), static_cast<mode_t>(mode)));
    return {};
  }
  const int error = errno;
  if (error != EEXIST) return {Step::makeFolder, error};
  if (kindOf(path) == Kind::folder) return {};
  return {Step::makeFolder, ENOTDIR};
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
  if (!real) return {Outcome::failed, {Step::nameFile, EINVAL}};
  return posix::writeAtomically(calls_, *real, bytes, static_cast<mode_t>(mode), publication);
}

bool PosixFiles::setPermissions(const std::string& path, std::uint32_t mode) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  return real && openUp(*real, static_cast<mode_t>(mode));
}

Reason PosixFiles::createFolder(const std::string& path, std::uint32_t mode) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  if (!real || real->empty()) return {Step::makeFolder, EINVAL};
  for (std::size_t end = 0; end < real->size();) {
    end = std::min(real->find('/', end + 1), real->size());
    const std::string level = real->substr(0, end);
    if (kindOf(level) == Kind::folder) continue;
    const Reason reason = createLevel(level, mode);
    if (reason.hasFailed()) return reason;
  }
  return {};
}

}  // namespace wenlolib::platform::posix
