/// What starting a program takes on any POSIX system.
#ifndef WENLOLIB_PLATFORM_POSIX_PROGRAMSTART_H
#define WENLOLIB_PLATFORM_POSIX_PROGRAMSTART_H

#include <signal.h>
#include <sys/wait.h>

#include <cstdint>
#include <string>
#include <vector>

namespace wenlolib::platform::posix {

/// Blocks every signal for this thread while it lives: no handler of the host's may run in the
/// go-between, which is born with the thread's mask.
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

/// The program's own path and its arguments, in the form that starting it takes. It points into
/// both of them.
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
