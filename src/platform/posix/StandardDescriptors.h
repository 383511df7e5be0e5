/// Keeping clear of the standard descriptors.
#ifndef WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H
#define WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace wenlolib::platform::posix {

/// The same open file under a number above 2, closed on exec. In a host that has closed its
/// standard streams a new file gets one of their numbers, and whatever the host prints would go
/// into it. Negative where `file` is, and where no other number is to be had.
inline int aboveStandard(int file) noexcept {
  if (file < 0 || file > STDERR_FILENO) return file;
  const int other = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  static_cast<void>(::close(file));
  return other;
}

}  // namespace wenlolib::platform::posix

#endif
