#include "platform/apple/ApplePrograms.h"

#include <crt_externs.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/posix/Errors.h"
#include "platform/posix/ProgramStart.h"
#include "platform/posix/StandardDescriptors.h"

// A program is started by a go-between: a copy of the host's process that starts it, waits for it
// if asked to, reports through a pipe how it went, and ends. So a host that ignores SIGCHLD (whose
// children leave no status) still gets its answer. A host that reaps every child it hears of reaps
// only the go-between. And a program that nobody waits for is not the host's child, so it cannot
// become a zombie there.

namespace wenlolib::platform::apple {
namespace {

/// What the go-between reports. It always reports something, so that the pipe need not be read to
/// its end: another thread of the host may start a program of its own before the ends of the pipe
/// are marked to close on exec, and that program would hold the pipe open as long as it runs.
struct Answer {
  bool ended = false;  // the program has run, and was waited for
  std::int32_t status = 0;
};

int makePipe(int* ends) {
  if (::pipe(ends) != 0) return -1;
  for (int end = 0; end < 2; ++end) static_cast<void>(::fcntl(ends[end], F_SETFD, FD_CLOEXEC));
  return 0;
}

/// The writing end is closed first: otherwise the read would not end if the go-between was killed.
Answer answerFrom(posix::Pipe& pipe) {
  pipe.closeWritingEnd();
  Answer answer;
  const ssize_t count =
      posix::uninterrupted([&] { return ::read(pipe.readingEnd(), &answer, sizeof answer); });
  return count == ssize_t{sizeof answer} ? answer : Answer();
}

/// Made before the fork: these calls may need memory, which a forked copy of a process with threads
/// must not allocate.
class SpawnAttributes {
 public:
  explicit SpawnAttributes(const sigset_t& mask) {
    valid_ = posix_spawnattr_init(&attributes_) == 0;
    if (!valid_) return;
    posix_spawnattr_setsigmask(&attributes_, &mask);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
  }
  ~SpawnAttributes() {
    if (valid_) posix_spawnattr_destroy(&attributes_);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  [[nodiscard]] const posix_spawnattr_t* get() const { return valid_ ? &attributes_ : nullptr; }

 private:
  posix_spawnattr_t attributes_{};
  bool valid_ = false;
};

struct Start {
  const char* path;
  char* const* arguments;
  const posix_spawnattr_t* attributes;
  bool wait;
  int answer;  // the writing end
};

/// While the go-between waits, it must not keep open what the host closes.
void closeAllBut(int kept) {
  constexpr int most = 65536;
  const int end = std::min(getdtablesize(), most);
  for (int file = 0; file < end; ++file) {
    if (file != kept) static_cast<void>(::close(file));
  }
}

/// The whole life of the go-between. It does only what is safe after a fork of a process with
/// threads.
[[noreturn]] void goBetween(const Start& start) {
  struct sigaction standard {};
  standard.sa_handler = SIG_DFL;
  sigaction(SIGCHLD, &standard, nullptr);
  Answer answer;
  pid_t program = 0;
  if (posix_spawn(&program, start.path, nullptr, start.attributes, start.arguments,
                  *_NSGetEnviron()) == 0 &&
      start.wait) {
    closeAllBut(start.answer);
    int status = 0;
    answer.ended = waitpid(program, &status, 0) == program;
    answer.status = posix::statusOf(status);
  }
  _exit(::write(start.answer, &answer, sizeof answer) < 0 ? 1 : 0);
}

/// If the host ignores its children or reaps them all, the child is already gone; that is just as
/// good.
void reap(pid_t child) {
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace

std::optional<std::int32_t> ApplePrograms::run(const std::string& path,
                                               const std::vector<std::string>& arguments,
                                               bool wait) {
  const posix::CancellationHold hold;
  const Text real = root_.below(path);
  if (!real || !posix::canBePassed(arguments)) return std::nullopt;
  const std::vector<char*> vector = posix::argumentVector(path, arguments);
  posix::Pipe pipe(makePipe);
  if (!pipe.valid()) return std::nullopt;
  pid_t child = -1;
  {
    const posix::SignalHold signals;
    const SpawnAttributes attributes(signals.previous());
    if (attributes.get() == nullptr) return std::nullopt;
    child = ::fork();
    if (child == 0) {
      goBetween({real->c_str(), vector.data(), attributes.get(), wait, pipe.writingEnd()});
    }
  }
  if (child < 0) return std::nullopt;
  const Answer answer = answerFrom(pipe);
  reap(child);
  return answer.ended ? std::optional(answer.status) : std::nullopt;
}

}  // namespace wenlolib::platform::apple
