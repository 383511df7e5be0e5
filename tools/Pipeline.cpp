#include "Pipeline.h"

#include <algorithm>
#include <new>

#include "WorkerPool.h"

namespace wenlolib::tools {
namespace {

Answer unreadable(const Candidate& candidate, std::string complaint) {
  Answer answer;
  answer.complaint = std::move(complaint);
  answer.path = candidate.path;
  answer.status = wrongUsage;
  return answer;
}

Answer readAndExamine(const Candidate& candidate, const Examine& examine, std::string& buffer) {
  if (!candidate.complaint.empty()) return unreadable(candidate, candidate.complaint);
  try {
    Reading reading = readDocument(candidate, buffer);
    if (!reading.complaint.empty()) return unreadable(candidate, std::move(reading.complaint));
    if (!reading.vanished) return examine(candidate, reading.bytes);
  } catch (const std::bad_alloc&) {
    std::string().swap(buffer);
    return unreadable(candidate, "too large for the memory there is");
  }
  Answer gone;
  gone.skipped = true;
  return gone;
}

}  // namespace

int goThrough(std::vector<std::string> paths, int jobs, const Examine& examine, Output& output,
              const Hear& hear) {
  output.expect(paths);
  DocumentWalk walk(std::move(paths));
  int status = allGood;
  const auto take = [&](const Answer& answer) {
    if (answer.skipped) return;
    output.write(answer.output);
    if (!answer.complaint.empty()) output.complain(answer.path, answer.complaint);
    status = std::max(status, answer.status);
    if (hear) hear(answer);
    output.advance();
  };
  const auto work = [&](const Candidate& candidate, std::string& buffer) {
    return readAndExamine(candidate, examine, buffer);
  };
  if (jobs > 1) {
    WorkerPool(jobs, work).run([&] { return walk.next(); }, take);
  } else {
    std::string buffer;
    while (const auto candidate = walk.next()) take(work(*candidate, buffer));
  }
  return status;
}

}  // namespace wenlolib::tools
