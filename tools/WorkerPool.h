/// Threads that work on documents ahead of the one whose turn it is.
#ifndef WENLOLIB_TOOLS_WORKERPOOL_H
#define WENLOLIB_TOOLS_WORKERPOOL_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "Pipeline.h"

namespace wenlolib::tools {

class WorkerPool {
 public:
  /// The text is the thread's own buffer. Must not throw; several threads call it.
  using Work = std::function<Answer(const Candidate&, std::string&)>;
  using Source = std::function<std::optional<Candidate>()>;

  WorkerPool(int jobs, Work work);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  /// Hands out what `source` gives, until it gives nothing, and the answers to `take` in the same
  /// order; both are called on the caller's thread. No more than a number of documents a thread are
  /// on their way at any time, and few where their answers are large.
  void run(const Source& source, const Hear& take);

 private:
  struct Task {
    Candidate candidate;
    Answer answer;
    bool done = false;
  };

  void workOn();
  [[nodiscard]] std::size_t takeTasks(std::vector<Task*>& taken, std::size_t most);
  void finish(const std::vector<Task*>& done, std::vector<Answer>& answers);
  [[nodiscard]] bool fill(const Source& source);
  [[nodiscard]] std::vector<Answer> finished();

  Work work_;
  std::size_t window_;
  std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable finished_;
  std::deque<Task> tasks_;  // in order; a deque leaves the others where they are
  std::size_t given_ = 0;   // how many of them a thread has taken
  std::size_t held_ = 0;    // bytes in answers that wait for their turn
  bool ended_ = false;      // no more will come
  std::vector<std::thread> threads_;
};

}  // namespace wenlolib::tools

#endif
