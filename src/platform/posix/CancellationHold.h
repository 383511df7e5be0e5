/// Keeps a cancelled thread in one piece until a service has done its work.
#ifndef WENLOLIB_PLATFORM_POSIX_CANCELLATIONHOLD_H
#define WENLOLIB_PLATFORM_POSIX_CANCELLATIONHOLD_H

#include <pthread.h>

namespace wenlolib::platform::posix {

/// A host may cancel the thread that records. Most system calls are cancellation points, and the
/// forced unwinding that starts there would end the host's process at the library's edge: within
/// the scope of this object the request waits.
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
