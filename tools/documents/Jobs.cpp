#include "documents/Jobs.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "documents/Archive.h"
#include "documents/PathList.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t tasksPerThread = 128;
constexpr std::size_t mostHeldBytes = std::size_t{32} << 20;

/// How many tasks a thread takes at once. Passing a small document on takes longer than the work on
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

}  // namespace

DocumentJobs::DocumentJobs(int jobs, Work work)
    : work_(std::move(work)), window_(static_cast<std::size_t>(jobs) * tasksPerThread) {
  threads_.reserve(static_cast<std::size_t>(jobs));
  for (int i = 0; i < jobs; ++i) threads_.emplace_back([this] { workOn(); });
}

DocumentJobs::~DocumentJobs() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
    given_ = tasks_.size();  // tasks that no thread has taken are dropped
  }
  added_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void DocumentJobs::run(const Source& source, const Listener& take) {
  bool more = true;
  while (more || !tasks_.empty()) {
    if (more) more = fill(source);
    for (const Answer& answer : takeFinished()) take(answer);
  }
}

namespace {

std::size_t carriedBy(const Candidate& candidate) {
  return candidate.bytes ? candidate.bytes->size() : 0;
}

std::size_t heldBy(const Answer& answer) {
  return answer.output.size() + answer.madeBytes;
}

}  // namespace

/// False when the source has nothing left. Only the caller's thread adds and removes tasks, so it
/// may look at their number without a lock.
bool DocumentJobs::fill(const Source& source) {
  std::vector<Candidate> candidates;
  bool more = true;
  while (more && tasks_.size() + candidates.size() < window_ && carried_ < mostHeldBytes) {
    std::optional<Candidate> candidate = source();
    more = candidate.has_value();
    if (!more) break;
    carried_ += carriedBy(*candidate);
    candidates.push_back(std::move(*candidate));
  }
  {
    const std::lock_guard lock(mutex_);
    for (Candidate& candidate : candidates) tasks_.push_back({std::move(candidate), {}, false});
  }
  added_.notify_all();
  return more;
}

/// Waits until the first task is done. Takes it off the queue, with the done ones that follow it.
std::vector<Answer> DocumentJobs::takeFinished() {
  std::vector<Answer> answers;
  if (tasks_.empty()) return answers;
  {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this] { return tasks_.front().done; });
    while (!tasks_.empty() && tasks_.front().done) {
      answers.push_back(std::move(tasks_.front().answer));
      held_ -= heldBy(answers.back());
      carried_ -= carriedBy(tasks_.front().candidate);
      tasks_.pop_front();
      --given_;
    }
  }
  added_.notify_all();
  return answers;
}

void DocumentJobs::workOn() {
  std::string buffer;
  std::vector<Task*> tasks;
  std::vector<Answer> answers;
  Portion portion;
  while (takeTasks(tasks, portion.size()) > 0) {
    const auto start = std::chrono::steady_clock::now();
    answers.clear();
    for (const Task* task : tasks) answers.push_back(work_(task->candidate, buffer));
    portion.adapt(std::chrono::steady_clock::now() - start);
    finish(tasks, answers);
  }
}

/// Waits for tasks that no thread has taken and takes some; none when no more will come. While the
/// answers that wait are large, a thread goes on only if the first task in the queue is free.
std::size_t DocumentJobs::takeTasks(std::vector<Task*>& taken, std::size_t most) {
  std::unique_lock lock(mutex_);
  added_.wait(lock, [this] {
    return ended_ || (given_ < tasks_.size() && (held_ < mostHeldBytes || given_ == 0));
  });
  taken.clear();
  while (given_ < tasks_.size() && taken.size() < most) taken.push_back(&tasks_[given_++]);
  return taken.size();
}

void DocumentJobs::finish(const std::vector<Task*>& done, std::vector<Answer>& answers) {
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < done.size(); ++i) {
    held_ += heldBy(answers[i]);
    done[i]->answer = std::move(answers[i]);
    done[i]->done = true;
  }
  if (done.front() == &tasks_.front()) finished_.notify_one();
}

namespace {

Answer complaintOf(const Candidate& candidate, std::string complaint) {
  Answer answer;
  answer.complaint = std::move(complaint);
  answer.path = candidate.path;
  answer.member = candidate.member;
  answer.forGood = candidate.forGood;
  answer.status = candidate.nothing ? notGood : unreadable;
  return answer;
}

Answer readAndExamine(const Candidate& candidate, const Examiner& examine, std::string& buffer) {
  if (!candidate.complaint.empty()) return complaintOf(candidate, candidate.complaint);
  try {
    DocumentReading reading = readDocument(candidate, buffer);
    if (!reading.complaint.empty()) return complaintOf(candidate, std::move(reading.complaint));
    if (!reading.vanished) return examine(candidate, reading.bytes);
  } catch (const std::bad_alloc&) {
    std::string().swap(buffer);
    return complaintOf(candidate, "too large for the available memory");
  }
  Answer gone;
  gone.skipped = true;
  return gone;
}

std::string placeOf(const Answer& answer) {
  return answer.member ? answer.path + ": " + *answer.member : answer.path;
}

/// The number of documents. Counting begins when it is first asked for: most runs end before that.
Progress::Total countAhead(std::vector<std::string> paths) {
  return [paths = std::move(paths), count = std::shared_ptr<DocumentCount>()]() mutable {
    try {
      if (!count) count = std::make_shared<DocumentCount>(std::exchange(paths, {}));
      return count->total();
    } catch (const std::system_error&) {
      return std::optional<std::uint64_t>();
    }
  };
}

}  // namespace

Passage goThrough(const DocumentOptions& options, const Examiner& examine, Output& output,
                  const Listener& hear) {
  std::vector<std::string> paths = options.paths;
  const std::string& list = options.pathsFrom;
  output.endOnInterrupt();
  if (!list.empty()) {
    const std::string complaint = appendPaths(list, options.nul ? '\0' : '\n', paths);
    output.endIfInterrupted();
    if (!complaint.empty()) output.complain(list, complaint);
    if (!complaint.empty()) return {unreadable, {}};
    if (paths.empty()) output.complain(list, "there is no path in it");
    if (paths.empty()) return {notGood, {}};
  }
  // How many documents are in an archive shows only at its end.
  if (!options.archives) output.expect(countAhead(paths));
  ArchiveWalk walk(std::move(paths), options.archives, options.skip);
  Passage passage;
  const auto take = [&](const Answer& answer) {
    output.endIfInterrupted();
    if (answer.skipped) return;
    output.write(answer.output);
    if (!answer.complaint.empty()) output.complain(placeOf(answer), answer.complaint);
    passage.status = std::max(passage.status, answer.status);
    if (hear) hear(answer);
    output.advance();
  };
  const auto work = [&](const Candidate& candidate, std::string& buffer) {
    return readAndExamine(candidate, examine, buffer);
  };
  if (options.jobs > 1) {
    DocumentJobs(options.jobs, work).run([&] { return walk.next(); }, take);
  } else {
    std::string buffer;
    while (const auto candidate = walk.next()) take(work(*candidate, buffer));
  }
  output.endIfInterrupted();
  passage.passedOver = walk.passedOver();
  return passage;
}

}  // namespace wenlolib::tools
