/// How system calls are made here: what their errors say, and what happens when the thread is
/// cancelled.
#ifndef WENLOLIB_PLATFORM_POSIX_ERRORS_H
#define WENLOLIB_PLATFORM_POSIX_ERRORS_H

#include <pthread.h>

#include <cerrno>

#include "platform/Reason.h"

namespace wenlolib::platform::posix {

// --- Errors ---

/// Repeats a call for as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Whether `error` answers what was asked: there is nothing, or something other than expected, or
/// this user may not see it. Any other error means that the system could not answer: a shortage of
/// memory or descriptors, a failing disk.
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

/// Throws NoAnswer for an error that is not an answer. If it were taken for one, a file would count
/// as missing and its contents would be replaced.
inline void throwUnlessAnswer(Step step, int error) {
  if (!isAnswer(error)) throw NoAnswer({step, error});
}

// --- Cancellation ---

/// A host may cancel the thread that records. Most system calls are cancellation points, and the
/// forced unwinding that starts there would end the host's process at the library's edge. While
/// this object lives, the request waits.
class CancellationHold {
 public:
  CancellationHold() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &previous_); }
  ~CancellationHold() { pthread_setcancelstate(previous_, nullptr); }
  CancellationHold(const CancellationHold&) = delete;
  CancellationHold& operator=(const CancellationHold&) = delete;

 private:
  int previous_ = PTHREAD_CANCEL_ENABLE;
};

}  // namespace wenlolib::platform::posix

#endif
