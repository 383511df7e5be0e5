#include "endtoend/Writers.h"

#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <vector>

namespace wenlolib::tests {

std::string contentsOfRecord(int writer, int record) {
  std::string contents = std::to_string(writer) + "/" + std::to_string(record) + " ";
  contents.append(static_cast<std::size_t>(record % 5) * 20'000, static_cast<char>('a' + writer));
  return contents;
}

int writeAll(RecordKind kind, int writer) {
  int refused = 0;
  for (int record = 0; record < recordsEach; ++record) {
    if (!recordAs(kind, contentsOfRecord(writer, record))) ++refused;
  }
  return refused;
}

int inProcesses(const std::function<int(int)>& work, const std::function<void()>& meanwhile) {
  for (int writer = 0; writer < writers; ++writer) {
    if (::fork() == 0) ::_exit(work(writer) == 0 ? 0 : 1);
  }
  int failed = 0;
  for (int ended = 0; ended < writers;) {
    int status = 0;
    const pid_t child = ::waitpid(-1, &status, WNOHANG);
    if (child < 0) return failed + writers - ended;
    if (child == 0) {
      meanwhile();
      continue;
    }
    ++ended;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) ++failed;
  }
  return failed;
}

int inThreads(const std::function<int(int)>& work, const std::function<void()>& meanwhile) {
  std::atomic<int> failed = 0;
  std::atomic<int> running = writers;
  std::vector<std::thread> threads;
  for (int writer = 0; writer < writers; ++writer) {
    threads.emplace_back([&, writer] {
      if (work(writer) != 0) ++failed;
      --running;
    });
  }
  while (running > 0) meanwhile();
  for (std::thread& thread : threads) thread.join();
  return failed;
}

}  // namespace wenlolib::tests
