#include "terminal/Pager.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdio_ext.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

/// Starts a program whose standard input is `input`. 0 if it cannot be started.
pid_t start(const char* const* words, int input) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGINT);
  sigaddset(&signals, SIGPIPE);
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t process = 0;
  const int error = ::posix_spawnp(&process, words[0], &actions, &attributes,
                                   const_cast<char* const*>(words), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

pid_t startPager(int input) {
  const char* const chosen = std::getenv("PAGER");
  if (chosen != nullptr) {
    const char* const words[] = {"/bin/sh", "-c", chosen, nullptr};
    return *chosen == '\0' ? 0 : start(words, input);
  }
  const char* const words[] = {"less", "-FRX", nullptr};
  return start(words, input);
}

}  // namespace

Pager::Pager() {
  int ends[2];
  if (!isTerminal(stdout) || std::fflush(stdout) != 0 || ::pipe2(ends, O_CLOEXEC) != 0) return;
  process_ = startPager(ends[0]);
  if (process_ > 0) divert(ends);
  ::close(ends[0]);
  ::close(ends[1]);
}

void Pager::divert(const int (&ends)[2]) {
  // The pager alone decides what an interrupt means, and writing to one that has ended must fail
  // instead of ending this process.
  interrupt_ = std::signal(SIGINT, SIG_IGN);
  brokenPipe_ = std::signal(SIGPIPE, SIG_IGN);
  terminal_ = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  ::dup2(ends[1], STDOUT_FILENO);
}

bool Pager::close() {
  if (process_ <= 0) return true;
  // What a pager that has ended did not take is not for the terminal either.
  if (std::fflush(stdout) != 0) __fpurge(stdout);
  ::dup2(terminal_, STDOUT_FILENO);
  ::close(terminal_);
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  process_ = 0;
  std::clearerr(stdout);
  std::signal(SIGINT, interrupt_);
  std::signal(SIGPIPE, brokenPipe_);
  // With these a shell says that it cannot execute or find a program.
  return !WIFEXITED(status) || (WEXITSTATUS(status) != 126 && WEXITSTATUS(status) != 127);
}

}  // namespace wenlolib::tools
