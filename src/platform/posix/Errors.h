/// What a failed system call says.
#ifndef WENLOLIB_PLATFORM_POSIX_ERRORS_H
#define WENLOLIB_PLATFORM_POSIX_ERRORS_H

#include <cerrno>

#include "platform/Reason.h"

namespace wenlolib::platform::posix {

/// Repeats a call for as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Whether `error` answers what was asked: there is nothing, or something else than expected, or
/// nothing that is this user's to see. Any other error says that the system could not answer: a
/// shortage of memory or descriptors, a disk that fails.
[[nodiscard]] constexpr bool isAnswer(int error) noexcept {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
    case EISDIR:
      return true;
    default:
      return false;
  }
}

/// Throws NoAnswer for an error that is no answer. Taken for one, it would make a file pass for
/// missing, and what it holds would be replaced.
inline void throwUnlessAnswer(Step step, int error) {
  if (!isAnswer(error)) throw NoAnswer({step, error});
}

}  // namespace wenlolib::platform::posix

#endif
