/// Many documents, several at a time; the results come in their order.
#ifndef WENLOLIB_READING_DOCUMENTJOBS_H
#define WENLOLIB_READING_DOCUMENTJOBS_H

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "reading/DocumentFiles.h"

namespace wenlolib {

/// How many documents are worked on at a time: by default, and at most.
inline constexpr int defaultJobs = 1;
inline constexpr int mostJobs = 256;

/// How many documents a thread takes at once. Passing a small one on takes longer than the work on
/// it, so small ones are taken by the dozen; a large one is taken alone.
class Portion {
 public:
  [[nodiscard]] std::size_t size() const { return size_; }

  void adapt(std::chrono::steady_clock::duration taken) {
    constexpr std::size_t largest = 32;
    if (taken < std::chrono::milliseconds(1)) size_ = std::min(2 * size_, largest);
    if (taken > std::chrono::milliseconds(4)) size_ = std::max<std::size_t>(size_ / 2, 1);
  }

 private:
  std::size_t size_ = 1;
};

/// Works on what a source gives: on threads, ahead of the result asked for; with one job, on the
/// caller's thread when asked. Limits the documents under way, the more so if results are large.
/// `heldBy(result)` is a result's size in bytes.
template <class Result>
class DocumentJobs {
 public:
  /// Gives the next document; nothing at the end. Called on the caller's thread.
  using Source = std::function<std::optional<Candidate>()>;
  /// The string is the thread's own buffer. Several threads call it.
  using Work = std::function<Result(const Candidate&, std::string&)>;

  /// Throws std::system_error if a thread cannot be started.
  DocumentJobs(int jobs, Source source, Work work)
      : source_(std::move(source)), work_(std::move(work)) {
    if (jobs <= 1) return;
    window_ = static_cast<std::size_t>(jobs) * tasksPerThread;
    try {
      for (int i = 0; i < jobs; ++i) threads_.emplace_back([this] { workOn(); });
    } catch (...) {
      end();
      throw;
    }
  }

  ~DocumentJobs() { end(); }
  DocumentJobs(const DocumentJobs&) = delete;
  DocumentJobs& operator=(const DocumentJobs&) = delete;

  /// The result for the next document; nothing at the end. Throws what the source or the work
  /// threw; after that there is no next one.
  [[nodiscard]] std::optional<Result> next() {
    if (threads_.empty()) {
      const std::optional<Candidate> candidate = source_();
      return candidate ? std::optional(work_(*candidate, buffer_)) : std::nullopt;
    }
    if (finishedResults_.empty()) {
      fill();
      takeFinished();
    }
    if (finishedResults_.empty()) return std::nullopt;
    std::optional<Result> result(std::move(finishedResults_.front()));
    finishedResults_.pop_front();
    return result;
  }

 private:
  static constexpr std::size_t tasksPerThread = 128;
  static constexpr std::size_t mostHeldBytes = std::size_t{32} << 20;

  struct Task {
    Candidate candidate;
    std::optional<Result> result;
  };

  /// A name in an archive can be as long as a document.
  static std::size_t carriedBy(const Candidate& candidate) {
    return candidate.path.size() + (candidate.member ? candidate.member->size() : 0) +
           (candidate.bytes ? candidate.bytes->size() : 0);
  }

  // --- The caller's thread. It alone adds and removes tasks, and may count them without a lock ---

  void fill() {
    std::vector<Candidate> candidates;
    while (more_ && tasks_.size() + candidates.size() < window_ && carried_ < mostHeldBytes) {
      std::optional<Candidate> candidate = source_();
      more_ = candidate.has_value();
      if (!more_) break;
      carried_ += carriedBy(*candidate);
      candidates.push_back(std::move(*candidate));
    }
    {
      const std::lock_guard lock(mutex_);
      for (Candidate& candidate : candidates) tasks_.push_back({std::move(candidate), {}});
    }
    added_.notify_all();
  }

  /// Waits until the first task is done. Takes it off the queue, with the done ones that follow it.
  void takeFinished() {
    if (tasks_.empty()) return;
    {
      std::unique_lock lock(mutex_);
      finished_.wait(lock, [this] { return failure_ || tasks_.front().result.has_value(); });
      if (failure_) std::rethrow_exception(failure_);
      while (!tasks_.empty() && tasks_.front().result) {
        Task& task = tasks_.front();
        held_ -= heldBy(*task.result);
        carried_ -= carriedBy(task.candidate);
        finishedResults_.push_back(std::move(*task.result));
        tasks_.pop_front();
        --given_;
      }
    }
    added_.notify_all();
  }

  void end() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
      given_ = tasks_.size();  // tasks that no thread has taken are dropped
    }
    added_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  // --- The threads ---

  /// An exception that ends a thread leaves tasks that nobody will finish.
  void workOn() noexcept {
    try {
      workOnTasks();
    } catch (...) {
      const std::lock_guard lock(mutex_);
      failure_ = std::current_exception();
      finished_.notify_one();
    }
  }

  void workOnTasks() {
    std::string buffer;
    std::vector<Task*> tasks;
    std::vector<Result> results;
    Portion portion;
    while (takeTasks(tasks, portion.size()) > 0) {
      const auto start = std::chrono::steady_clock::now();
      results.clear();
      for (const Task* task : tasks) results.push_back(work_(task->candidate, buffer));
      portion.adapt(std::chrono::steady_clock::now() - start);
      finish(tasks, results);
    }
  }

  /// Waits for tasks that no thread has taken and takes some; none when no more will come. While
  /// the results that wait are large, a thread goes on only if the first task in the queue is free.
  std::size_t takeTasks(std::vector<Task*>& taken, std::size_t most) {
    std::unique_lock lock(mutex_);
    added_.wait(lock, [this] {
      return ended_ || (given_ < tasks_.size() && (held_ < mostHeldBytes || given_ == 0));
    });
    taken.clear();
    while (given_ < tasks_.size() && taken.size() < most) taken.push_back(&tasks_[given_++]);
    return taken.size();
  }

  void finish(const std::vector<Task*>& done, std::vector<Result>& results) {
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i < done.size(); ++i) {
      held_ += heldBy(results[i]);
      done[i]->result = std::move(results[i]);
    }
    if (done.front() == &tasks_.front()) finished_.notify_one();
  }

  Source source_;
  Work work_;
  std::string buffer_;                  // the caller's thread's own
  std::deque<Result> finishedResults_;  // taken off the queue and not asked for yet
  bool more_ = true;                    // the source has more
  std::size_t carried_ = 0;             // bytes that tasks in the queue carry
  std::size_t window_ = 0;
  std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable finished_;
  std::deque<Task> tasks_;      // in order; a deque, so that pointers to tasks stay valid
  std::size_t given_ = 0;       // how many of them threads have taken
  std::size_t held_ = 0;        // bytes in results that wait for their turn
  bool ended_ = false;          // no more will come
  std::exception_ptr failure_;  // of a thread
  std::vector<std::thread> threads_;
};

}  // namespace wenlolib

#endif
