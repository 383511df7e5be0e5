/// What starting a program needs on any POSIX system.
#ifndef WENLOLIB_PLATFORM_POSIX_PROGRAMSTART_H
#define WENLOLIB_PLATFORM_POSIX_PROGRAMSTART_H

#include <signal.h>
#include <sys/wait.h>

#include <unistd.h>

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {

/// Blocks every signal for this thread while the object lives: no handler of the host may run in
/// what inherits the thread's mask: the go-between and new threads.
class SignalHold {
 public:
  SignalHold() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &previous_);
  }
  ~SignalHold() { pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
  SignalHold(const SignalHold&) = delete;
  SignalHold& operator=(const SignalHold&) = delete;
  [[nodiscard]] const sigset_t& previous() const { return previous_; }

 private:
  sigset_t previous_{};
};

/// Both ends of a pipe that no started program inherits.
class Pipe {
 public:
  /// `make` is given the place for both ends and returns 0 for success.
  template <class Make>
  explicit Pipe(const Make& make) {
    static_cast<void>(pipeAboveStandard(ends_, make));
  }
  ~Pipe() {
    for (const int end : ends_) close(end);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] bool valid() const { return ends_[0] >= 0 && ends_[1] >= 0; }
  [[nodiscard]] int readingEnd() const { return ends_[0]; }
  [[nodiscard]] int writingEnd() const { return ends_[1]; }
  void closeWritingEnd() { close(std::exchange(ends_[1], -1)); }

 private:
  static void close(int end) {
    if (end >= 0) static_cast<void>(::close(end));
  }

  std::array<int, 2> ends_{-1, -1};
};

/// The exit status, or the number of the signal that ended the program.
[[nodiscard]] inline std::int32_t statusOf(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

/// Whether a program can be given these arguments. One with a NUL inside would reach it cut short.
[[nodiscard]] inline bool canBePassed(const std::vector<std::string>& arguments) {
  for (const std::string& argument : arguments) {
    if (argument.find('\0') != std::string::npos) return false;
  }
  return true;
}

/// The program's own path and its arguments, in the form that starting it needs. The pointers lead
/// into both.
[[nodiscard]] inline std::vector<char*> argumentVector(const std::string& path,
                                                       const std::vector<std::string>& arguments) {
  std::vector<char*> pointers{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) {
    pointers.push_back(const_cast<char*>(argument.c_str()));
  }
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace wenlolib::platform::posix

#endif
