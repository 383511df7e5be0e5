/// Work that must be done in another process.
#ifndef WENLOLIB_TESTS_PLATFORM_POSIX_CHILD_H
#define WENLOLIB_TESTS_PLATFORM_POSIX_CHILD_H

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <functional>
#include <string>

namespace wenlolib::tests {

/// What a child answers if it was not permitted to do its work; see `inChild`.
inline const std::string notPermitted = "not permitted";

/// Runs `work` in a child. Answers the text that `work` answers, or how the child ended.
/// `work` must not use the test framework.
inline std::string inChild(const std::function<std::string()>& work) {
  int ends[2];
  if (::pipe(ends) != 0) return "no pipe";
  const pid_t child = ::fork();
  if (child == 0) {
    std::string answer;
    try {
      answer = work();
    } catch (const std::exception& problem) {
      answer = problem.what();
    }
    const bool told = ::write(ends[1], answer.data(), answer.size()) >= 0;
    ::_exit(told ? 0 : 1);
  }
  ::close(ends[1]);
  std::string answer;
  char buffer[4096];
  for (ssize_t count = 0; (count = ::read(ends[0], buffer, sizeof buffer)) > 0;) {
    answer.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(ends[0]);
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) return "no child";
  if (WIFSIGNALED(status)) return "ended by signal " + std::to_string(WTERMSIG(status));
  return WEXITSTATUS(status) == 0 ? answer : "exit status " + std::to_string(WEXITSTATUS(status));
}

/// A user that owns nothing.
inline constexpr uid_t nobody = 65534;

/// Gives up all rights for ever; for use in a child. Tests of permissions need this, since root
/// ignores permissions. An ordinary user has no rights to give up.
inline bool becomeUnprivileged() {
  if (::geteuid() != 0) return true;
  return ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
}

}  // namespace wenlolib::tests

#endif
