#include "documents/Jobs.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "documents/DocumentCount.h"
#include "documents/PathList.h"
#include "reading/Archive.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"

namespace wenlolib::tools {

std::string passedOverText(const PassedOver& passed) {
  std::string text;
  const auto add = [&](std::uint64_t count, std::string_view noun, std::string_view reason) {
    if (count == 0) return;
    text += fmt::format("{}{} {}", text.empty() ? "" : ", ", countText(count, noun), reason);
  };
  add(passed.otherEnding, "file", "with another ending");
  add(passed.links, "link", "to a folder");
  add(passed.unfinished, "file", "that is unfinished");
  return text;
}

static std::size_t heldBy(const Answer& answer) {
  return answer.output.size() + answer.complaint.size() + answer.path.size() +
         (answer.member ? answer.member->size() : 0) + answer.madeBytes;
}

namespace {

Answer complaintOf(const Candidate& candidate, std::string complaint) {
  Answer answer;
  answer.complaint = std::move(complaint);
  const std::string others = passedOverText(candidate.passed);
  if (!others.empty()) answer.complaint += "; passed over: " + others;
  answer.path = candidate.path;
  answer.member = candidate.member;
  answer.forGood = candidate.forGood;
  answer.status = candidate.nothing ? notGood : unreadable;
  return answer;
}

Answer readAndExamine(const Candidate& candidate, const Examiner& examine, std::string& buffer) {
  if (!candidate.complaint.empty()) return complaintOf(candidate, candidate.complaint);
  try {
    DocumentReading reading = readDocument(candidate, buffer, interrupted);
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
  ArchiveWalk walk(std::move(paths), options.archives, options.skip, interrupted);
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
  DocumentJobs<Answer> jobs(
      options.jobs, [&] { return walk.next(); }, work);
  while (const std::optional<Answer> answer = jobs.next()) take(*answer);
  output.endIfInterrupted();
  passage.passedOver = walk.passedOver();
  return passage;
}

}  // namespace wenlolib::tools
