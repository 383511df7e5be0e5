/// Keeping clear of the standard descriptors.
///
/// If a host has closed its standard streams, whatever is opened next gets one of their numbers,
/// and what another thread of the host prints goes there. A file that is written to must never have
/// such a number, not even for a moment.
#ifndef WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H
#define WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

namespace wenlolib::platform::posix {

/// The same open file under a number above 2, closed on exec. For files that are only read or
/// looked up. Negative if `file` is, and if no other number is free.
inline int aboveStandard(int file) noexcept {
  if (file < 0 || file > STDERR_FILENO) return file;
  const int other = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  static_cast<void>(::close(file));
  return other;
}

/// Holds free standard numbers while the object lives, by descriptors that cannot be written to.
class StandardHold {
 public:
  StandardHold() = default;
  ~StandardHold() {
    for (std::size_t i = 0; i < count_; ++i) static_cast<void>(::close(held_[i]));
  }
  StandardHold(const StandardHold&) = delete;
  StandardHold& operator=(const StandardHold&) = delete;

  /// Takes the numbers that are free now.
  void occupy() noexcept {
    int number = opened();
    while (number >= 0 && number <= STDERR_FILENO && count_ < held_.size()) {
      held_[count_++] = number;
      number = opened();
    }
    if (number >= 0) static_cast<void>(::close(number));
  }

 private:
  static int opened() noexcept {
#ifdef O_PATH
    return ::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC);
#else
    return ::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
#endif
  }

  std::array<int, 3> held_{};
  std::size_t count_ = 0;
};

/// How often something that got a standard number is made again. Each time, the numbers that are
/// free then are held; more than one round is needed if the host closes and opens files meanwhile.
inline constexpr int standardRounds = 8;

/// What `make` opens, under a number above 2. If that gets a standard number, it is closed, `drop`
/// undoes what was made, and `make` is tried again. Negative, with `errno` set, if `make` fails.
template <class Make, class Drop>
[[nodiscard]] int madeAboveStandard(const Make& make, const Drop& drop) {
  StandardHold hold;
  for (int round = 0; round < standardRounds; ++round) {
    const int file = make();
    if (file < 0 || file > STDERR_FILENO) return file;
    static_cast<void>(::close(file));
    drop();
    hold.occupy();
  }
  errno = EMFILE;
  return -1;
}

/// Both ends of a pipe by `make`, which returns 0 for success; they too get numbers above 2. False
/// if there is no pipe; the ends are then -1. The free numbers are held first, because a signal
/// ends a host that prints into a pipe that nobody reads.
template <class Make>
[[nodiscard]] bool pipeAboveStandard(std::array<int, 2>& ends, const Make& make) {
  StandardHold hold;
  for (int round = 0; round < standardRounds; ++round) {
    hold.occupy();
    if (make(ends.data()) != 0) break;
    if (ends[0] > STDERR_FILENO && ends[1] > STDERR_FILENO) return true;
    static_cast<void>(::close(ends[1]));  // the writing end first
    static_cast<void>(::close(ends[0]));
  }
  ends = {-1, -1};
  return false;
}

}  // namespace wenlolib::platform::posix

#endif
