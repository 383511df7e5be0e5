#include "Children.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace wenlolib::tests::lists {
namespace {

constexpr rlim_t secondsLimit = 60;
constexpr rlim_t memoryLimit = rlim_t{6} << 30U;
constexpr rlim_t stackLimit = rlim_t{8} << 20U;

void limit(decltype(RLIMIT_CPU) resource, rlim_t most) {
  const rlimit both{most, most};
  setrlimit(resource, &both);
}

[[noreturn]] void run(std::size_t begin, std::size_t end, const Work& work, int output) {
  limit(RLIMIT_CPU, secondsLimit);
  limit(RLIMIT_AS, memoryLimit);
  limit(RLIMIT_STACK, stackLimit);
  limit(RLIMIT_CORE, 0);
  dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
  for (std::size_t number = begin; number < end; ++number) {
    const std::string line = work(number) + "\n";
    if (write(output, line.data(), line.size()) != static_cast<ssize_t>(line.size())) _exit(1);
  }
  _exit(0);
}

std::string endOf(int status) {
  if (!WIFSIGNALED(status)) return "exit status " + std::to_string(WEXITSTATUS(status));
  return strsignal(WTERMSIG(status));
}

/// The number that ended the child, or `end`.
std::size_t oneChild(std::size_t begin, std::size_t end, const Work& work,
                     const std::function<void(std::size_t, const std::string&)>& done,
                     int& status) {
  int ends[2];
  std::fflush(nullptr);
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) run(begin, end, work, ends[1]);
  close(ends[1]);
  FILE* input = fdopen(ends[0], "r");
  char* line = nullptr;
  std::size_t room = 0, number = begin;
  while (getline(&line, &room, input) > 0) {
    *std::strchr(line, '\n') = '\0';
    done(number++, line);
  }
  std::free(line);
  std::fclose(input);
  if (child < 0 || waitpid(child, &status, 0) != child) throw std::runtime_error("no child");
  return number;
}

}  // namespace

void inChildren(std::size_t count, std::size_t batch, const Work& work,
                const std::function<void(std::size_t, const std::string&)>& done,
                const std::function<void(std::size_t, const std::string&)>& died) {
  for (std::size_t next = 0; next < count;) {
    const std::size_t end = std::min(count, next + batch);
    int status = 0;
    next = oneChild(next, end, work, done, status);
    if (next < end) died(next++, endOf(status));
  }
}

}  // namespace wenlolib::tests::lists
