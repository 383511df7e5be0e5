#include "documents/DocumentCount.h"

#include <utility>

#include "reading/DocumentFiles.h"

namespace wenlolib::tools {

DocumentCount::DocumentCount(std::vector<std::string> paths)
    : thread_([this, paths = std::move(paths)]() mutable { count(std::move(paths)); }) {}

DocumentCount::~DocumentCount() {
  stopped_ = true;
  thread_.join();
}

std::optional<std::uint64_t> DocumentCount::total() const {
  return done_ ? std::optional(documents_) : std::nullopt;
}

void DocumentCount::count(std::vector<std::string> paths) {
  DocumentWalk walk(std::move(paths));
  std::uint64_t documents = 0;
  while (!stopped_) {
    const std::optional<Candidate> candidate = walk.next();
    if (!candidate) break;
    if (!candidate->nothing) ++documents;
  }
  if (stopped_) return;
  documents_ = documents;
  done_ = true;
}

}  // namespace wenlolib::tools
