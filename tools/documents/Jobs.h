/// Many documents, several at a time; the answers come in their order.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_JOBS_H
#define WENLOLIB_TOOLS_DOCUMENTS_JOBS_H

#include <any>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "documents/DocumentFiles.h"
#include "documents/DocumentText.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

/// The result for one document.
struct Answer {
  std::string output;     // for standard output
  std::string complaint;  // for standard error, after the path; or ""
  std::string path;       // as complaints name it
  std::optional<std::string> member{};
  int status = allGood;                // an `Exit`
  bool forGood = false;                // the complaint holds while the file stays as it is
  bool skipped = false;                // it is not there any more and does not count
  std::optional<Condition> condition;  // of a document that was read
  std::any made{};                     // what else the examiner has for the listener
  std::size_t madeBytes = 0;           // about as many as that takes
};

/// Examines the bytes of one document. Several threads call it at once.
using Examiner = std::function<Answer(const Candidate&, std::string_view bytes)>;

/// Receives every answer, in order, on the caller's thread.
using Listener = std::function<void(const Answer&)>;

/// How many documents are worked on at a time: by default, and at most.
inline constexpr int defaultJobs = 1;
inline constexpr int mostJobs = 256;

/// Which documents, and how many at a time.
struct DocumentOptions {
  std::vector<std::string> paths;
  std::string pathsFrom;  // a file with more paths, "-" for standard input; or ""
  bool nul = false;       // these paths end in NUL, not in a line break
  int jobs = defaultJobs;
  bool archives = false;  // also the documents in archives
  Skip skip{};            // files and archives that are left out; or null
};

/// The end of a run.
struct Passage {
  int status = allGood;  // an `Exit`
  PassedOver passedOver;
};

/// Walks through the paths, reads and examines on `jobs` threads (1: the caller's own) and writes
/// the answers in the order of the walk, whatever `jobs` is. Memory grows with the number of
/// documents only by names. A folder without documents is complained of. An interrupt ends the
/// process after the answer that is being written.
Passage goThrough(const DocumentOptions& options, const Examiner& examine, Output& output,
                  const Listener& hear = nullptr);

/// Threads that work on documents ahead of the one that is answered next.
class DocumentJobs {
 public:
  /// The string is the thread's own buffer. Must not throw; several threads call it.
  using Work = std::function<Answer(const Candidate&, std::string&)>;
  using Source = std::function<std::optional<Candidate>()>;

  DocumentJobs(int jobs, Work work);
  ~DocumentJobs();
  DocumentJobs(const DocumentJobs&) = delete;
  DocumentJobs& operator=(const DocumentJobs&) = delete;

  /// Works on what `source` gives, until it gives nothing, and passes the answers to `take` in the
  /// same order; both are called on the caller's thread. The number of documents on their way is
  /// limited, and it is small if their answers are large.
  void run(const Source& source, const Listener& take);

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
  [[nodiscard]] std::vector<Answer> takeFinished();

  Work work_;
  std::size_t window_;
  std::mutex mutex_;
  std::condition_variable added_;
  std::condition_variable finished_;
  std::deque<Task> tasks_;   // in order; in a deque the others stay where they are
  std::size_t given_ = 0;    // how many of them threads have taken
  std::size_t held_ = 0;     // bytes in answers that wait for their turn
  std::size_t carried_ = 0;  // bytes that tasks in the queue carry; the caller's thread alone knows
  bool ended_ = false;       // no more will come
  std::vector<std::thread> threads_;
};

}  // namespace wenlolib::tools

#endif
