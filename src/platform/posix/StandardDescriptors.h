/// Keeping clear of the standard descriptors.
///
/// In a host that has closed its standard streams whatever is opened gets one of their numbers, and
/// what another thread of the host prints goes there. Something that is written to must never have
/// had such a number, not even for a moment.
#ifndef WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H
#define WENLOLIB_PLATFORM_POSIX_STANDARDDESCRIPTORS_H

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>

namespace wenlolib::platform::posix {

/// The same open file under a number above 2, closed on exec: for what is only read, or looked up.
/// Negative where `file` is, and where no other number is to be had.
inline int aboveStandard(int file) noexcept {
  if (file < 0 || file > STDERR_FILENO) return file;
  const int other = ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  static_cast<void>(::close(file));
  return other;
}

/// Holds free standard numbers while it lives, by a descriptor that cannot be written to.
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

/// How often something is made anew that got a standard number. Each time the numbers free then are
/// held; more rounds than one are needed where the host closes and opens meanwhile.
inline constexpr int standardRounds = 8;

/// What `make` opens, under a number above 2. What got a standard number is given up, and `drop`
/// takes back what was made of it. Negative, with `errno` set, where `make` fails.
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

/// Both ends of a pipe by `make` (0 for success), above 2 too. False where there is none; the ends
/// are then -1. The free numbers are held before: a host that prints into a pipe that nobody reads
/// is ended by a signal.
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
