#include "calls/Verify.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>

#include "base/EnumTable.h"
#include "calls/CommandLine.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "documents/Jobs.h"
#include "terminal/Format.h"

namespace wenlolib::tools {
namespace {

constexpr auto examples =
    "Searches folders and their sub-folders for *.PLM and *.ALM, in the order of each\n"
    "folder. Skips unfinished files and links to folders. Always examines a file that\n"
    "is named as PATH. PATH is used as given; --root does not apply to it. Exit\n"
    "status: 0 all are sound, 1 some are not, 2 wrong usage, 3 something could not\n"
    "be read.\n"
    "\n"
    "  truncated  the end is missing\n"
    "  damaged    the form is broken inside\n"
    "  altered    well-formed, but the checksum does not match\n"
    "  repaired   stray markup was escaped before the document was stored; the\n"
    "             checksum matches the text before that, and the document can be read\n"
    "  illegible  whole, but the contents cannot be decrypted, mostly because the\n"
    "             document has no date, and so no key\n"
    "\n"
    "Examples:\n"
    "  wenlolib verify Quillmere_Log_Album_2611.ALM\n"
    "  wenlolib verify --quiet --jobs 4 incoming/\n"
    "  wenlolib verify --json incoming/ | jq -r 'select(.sound | not) | .path'";

/// How many documents are in each condition.
class Counts {
 public:
  void add(const Answer& answer) {
    ++(answer.status == unreadable ? unreadable_ : counts_[answer.condition]);
  }

  [[nodiscard]] std::string summary() const {
    std::uint64_t documents = 0;
    std::string parts;
    for (const Condition condition : enumerators<Condition>) {
      const std::uint64_t count = counts_[condition];
      documents += count;
      if (count == 0) continue;
      parts += fmt::format("{}{} {}", parts.empty() ? ": " : ", ", groupDigits(count),
                           wordFor(condition));
    }
    const std::string unreadable =
        unreadable_ == 0 ? "" : "; " + groupDigits(unreadable_) + " could not be read";
    return countText(documents, "document") + parts + unreadable + "\n";
  }

 private:
  EnumTable<Condition, std::uint64_t> counts_;
  std::uint64_t unreadable_ = 0;
};

Answer verdictOn(const Candidate& candidate, std::string_view bytes, const VerifyOptions& options,
                 const Style& style) {
  const receiver::Verdict verdict = receiver::examine(bytes).verdict;
  Answer answer;
  answer.condition = conditionOf(verdict);
  answer.status = canBeReliedOn(answer.condition) ? allGood : notGood;
  if (options.quiet && verdict.sound()) return answer;
  answer.output = options.json ? verdictJson(candidate.path, bytes.size(), verdict)
                               : verdictLine(candidate.path, verdict, style);
  return answer;
}

}  // namespace

int verify(const VerifyOptions& options, Output& output) {
  Counts counts;
  const Style style{output.paint(), output.columns()};
  const int status = goThrough(
      options.paths, options.jobs,
      [&](const Candidate& candidate, std::string_view bytes) {
        return verdictOn(candidate, bytes, options, style);
      },
      output, [&](const Answer& answer) { counts.add(answer); });
  if (!options.json && !options.quiet) output.write(counts.summary());
  output.finish();
  return status;
}

void addVerify(CLI::App& app, Session& session) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App* const call = app.add_subcommand("verify", "Check whether documents are sound");
  call->add_flag("--json", options->json, "One JSON object for each document, on its own line");
  call->add_flag("--quiet,-q", options->quiet, "Show only documents that are not sound");
  addDocuments(*call, options->paths, options->jobs);
  call->footer(examples);
  call->callback([options, &session] {
    Output output("verify");
    session.exitStatus = verify(*options, output);
  });
}

}  // namespace wenlolib::tools
