#include "platform/linux/LinuxPrograms.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/posix/Errors.h"
#include "platform/posix/ProgramStart.h"
#include "platform/posix/StandardDescriptors.h"

// A program is started by a go-between: a copy of the host's process that starts it, waits for it
// if asked to, reports its status through a pipe, and ends. The go-between sends no signal when it
// ends, and a call that waits for any child does not find it. So a host that ignores SIGCHLD (whose
// children leave no status) or that reaps every child it hears of neither notices nor disturbs it.
// And a program that nobody waits for is not the host's child, so it cannot become a zombie there.

namespace wenlolib::platform::gnulinux {
namespace {

int makePipe(int* ends) {
  return pipe2(ends, O_CLOEXEC | O_NONBLOCK);
}

/// While the go-between waits, it must not keep open what the host closes, so it closes all
/// descriptors but the one for the answer. If the kernel cannot do that, they stay open until the
/// program ends.
void closeAllBut(int answer) {
#ifdef SYS_close_range
  if (answer > 0) syscall(SYS_close_range, 0U, static_cast<unsigned>(answer - 1), 0U);
  syscall(SYS_close_range, static_cast<unsigned>(answer + 1), ~0U, 0U);
#endif
}

/// The whole life of the go-between. It does only what is safe after a fork of a process with
/// threads.
[[noreturn]] void goBetween(const char* path, char* const* arguments, const sigset_t& mask,
                            bool wait, int answer) {
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &standard, nullptr);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigmask(&attributes, &mask);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
  pid_t program = 0;
  if (posix_spawn(&program, path, nullptr, &attributes, arguments, environ) == 0 && wait) {
    closeAllBut(answer);
    int status = 0;
    if (waitpid(program, &status, 0) == program) {
      const std::int32_t result = posix::statusOf(status);
      if (::write(answer, &result, sizeof result) < 0) _exit(1);
    }
  }
  _exit(0);
}

/// What the go-between has written into the pipe. It has ended by now, so the read does not wait:
/// other processes may hold copies of the writing end as long as they like.
std::optional<std::int32_t> answerFrom(int pipe) {
  std::int32_t status = 0;
  const ssize_t count = ::read(pipe, &status, sizeof status);
  return count == ssize_t{sizeof status} ? std::optional(status) : std::nullopt;
}

void reap(pid_t child) {
  while (waitpid(child, nullptr, __WALL) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::optional<std::int32_t> LinuxPrograms::run(const std::string& path,
                                               const std::vector<std::string>& arguments,
                                               bool wait) {
  const posix::CancellationHold hold;
  const Text real = root_.below(path);
  if (!real || !posix::canBePassed(arguments)) return std::nullopt;
  const std::vector<char*> vector = posix::argumentVector(path, arguments);
  const posix::Pipe pipe(makePipe);
  if (!pipe.valid()) return std::nullopt;
  pid_t child = -1;
  {
    const posix::SignalHold signals;
    // No exit signal, nothing shared: all arguments are zero, whatever their order on this machine.
    child = static_cast<pid_t>(syscall(SYS_clone, 0, 0, 0, 0, 0));
    if (child == 0) {
      goBetween(real->c_str(), vector.data(), signals.previous(), wait, pipe.writingEnd());
    }
  }
  if (child < 0) return std::nullopt;
  reap(child);
  return answerFrom(pipe.readingEnd());
}

}  // namespace wenlolib::platform::gnulinux
