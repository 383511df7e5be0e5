/// Many documents, several at a time, answered in their order.
#ifndef WENLOLIB_TOOLS_PIPELINE_H
#define WENLOLIB_TOOLS_PIPELINE_H

#include <functional>
#include <string>
#include <vector>

#include "Documents.h"
#include "Output.h"
#include "Session.h"
#include "Verdicts.h"

namespace wenlolib::tools {

/// What came of one document.
struct Answer {
  std::string output;     // for standard output
  std::string complaint;  // for standard error, behind the path; or ""
  std::string path;       // as complaints name it
  int status = allGood;   // an `Exit`
  bool skipped = false;   // it is not there any more: it counts for nothing
  Condition condition = Condition::sound;
};

/// Examines the bytes of one document. Several threads call it at once.
using Examine = std::function<Answer(const Candidate&, std::string_view bytes)>;

/// Hears of every document, in order, on the caller's thread.
using Hear = std::function<void(const Answer&)>;

/// Walks through `paths`, reads and examines on `jobs` threads (1: the caller's own) and writes the
/// answers in the order of the walk, whatever `jobs` is. Memory does not grow with their number.
/// Returns the exit status.
int goThrough(std::vector<std::string> paths, int jobs, const Examine& examine, Output& output,
              const Hear& hear = nullptr);

}  // namespace wenlolib::tools

#endif
