/// A run of the command over many documents.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_JOBS_H
#define WENLOLIB_TOOLS_DOCUMENTS_JOBS_H

#include <any>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "documents/DocumentText.h"
#include "reading/DocumentJobs.h"
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

/// Which documents, and how many at a time.
struct DocumentOptions {
  std::vector<std::string> paths;
  std::string pathsFrom;  // a file with more paths, "-" for standard input; or ""
  bool nul = false;       // these paths end in NUL, not in a line break
  int jobs = defaultJobs;
  bool archives = false;  // also the documents in archives
  Skip skip{};            // files and archives that are left out; or null
};

/// "2 files with another ending, 1 link to a folder"; "" if there is none.
[[nodiscard]] std::string passedOverText(const PassedOver& passed);

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

}  // namespace wenlolib::tools

#endif
