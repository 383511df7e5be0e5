#include "calls/Verify.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>

#include "base/EnumTable.h"
#include "calls/CommandLine.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr auto examples =
    "Searches folders and their sub-folders for *.PLM and *.ALM, in the order of the\n"
    "bytes of their names. Passes over unfinished files and links to folders. Always\n"
    "examines a file that is named as PATH, pipes included. PATH is used as given;\n"
    "--root does not apply to it. Exit status: 0 all are sound, 1 some are not or a\n"
    "folder has no documents, 2 wrong usage, 3 something could not be read.\n"
    "\n"
    "--list writes the path of each document that is neither sound nor repaired, as\n"
    "it is, on a line of its own, and nothing else; with -0 a NUL ends it. That is\n"
    "what xargs reads.\n"
    "\n"
    "  truncated  the end is missing\n"
    "  damaged    the form is broken inside\n"
    "  altered    well-formed, but the checksum does not match\n"
    "  repaired   stray markup was escaped before the document was stored; the\n"
    "             checksum matches the text before that, and the document can be read\n"
    "  illegible  whole, but the contents cannot be decrypted, mostly because the\n"
    "             document has no date, and so no key\n"
    "  foreign    a file of another kind\n"
    "\n"
    "Examples:\n"
    "  wenlolib verify Quillmere_Log_Album_2611.ALM\n"
    "  wenlolib verify --quiet --jobs 4 incoming/\n"
    "  wenlolib verify --list -0 incoming/ | xargs -0 -r mv -t broken/\n"
    "  wenlolib verify --json incoming/ | jq -r 'select(.sound | not) | .path'";

/// How many documents are in each condition.
class Counts {
 public:
  void add(const Answer& answer) {
    if (answer.condition) ++counts_[*answer.condition];
    if (answer.status == unreadable) ++unreadable_;
  }

  [[nodiscard]] std::string summary(const PassedOver& passedOver) const {
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
    const std::string others = passedOverText(passedOver);
    const std::string passed = others.empty() ? "" : "; passed over: " + others;
    return countText(documents, "document") + parts + unreadable + passed + "\n";
  }

 private:
  EnumTable<Condition, std::uint64_t> counts_;
  std::uint64_t unreadable_ = 0;
};

/// The path as it is, for a program; a person at a terminal sees what it holds.
std::string listed(const std::string& path, const VerifyOptions& options, const Style& style) {
  if (options.documents.nul) return path + '\0';
  return (style.columns > 0 ? visibleLine(path) : path) + '\n';
}

Answer verdictOn(const Candidate& candidate, std::string_view bytes, const VerifyOptions& options,
                 const Style& style) {
  const receiver::Verdict verdict = receiver::examine(bytes).verdict;
  Answer answer;
  answer.condition = conditionOf(verdict);
  const bool isReliable = canBeReliedOn(*answer.condition);
  answer.status = isReliable ? allGood : notGood;
  if (options.list ? isReliable : options.quiet && verdict.sound()) return answer;
  answer.output = options.list   ? listed(candidate.path, options, style)
                  : options.json ? verdictJson(candidate.path, bytes.size(), verdict)
                                 : verdictLine(candidate.path, verdict, style);
  return answer;
}

void check(const VerifyOptions& options) {
  checkDocuments(options.documents, true);
  if (options.list && options.json) {
    throw CLI::ValidationError("--list", "cannot be used with --json");
  }
  if (options.documents.nul && !options.list && options.documents.pathsFrom.empty()) {
    throw CLI::ValidationError("--null", "needs --list or --files-from");
  }
}

}  // namespace

int verify(const VerifyOptions& options, Output& output) {
  Counts counts;
  const Style style = output.style();
  const Passage passage = goThrough(
      options.documents,
      [&](const Candidate& candidate, std::string_view bytes) {
        return verdictOn(candidate, bytes, options, style);
      },
      output,
      [&](const Answer& answer) {
        counts.add(answer);
        if (options.json && answer.status == unreadable) {
          output.write(unreadableJson(answer.path, answer.complaint));
        }
      });
  const bool bare = options.json || options.quiet || options.list;
  if (!bare) output.write(counts.summary(passage.passedOver));
  output.finish();
  return passage.status;
}

void addVerify(CLI::App& app, Session& session) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App* const call = app.add_subcommand("verify", "Check whether documents are sound");
  call->add_flag("--json", options->json, "One JSON object for each document, on its own line");
  call->add_flag("--quiet,-q", options->quiet, "Show only documents that are not sound");
  call->add_flag("--list,-l", options->list, "Write only the paths of those that are not sound");
  addDocuments(*call, options->documents);
  call->footer(examples);
  call->callback([options, &session] {
    check(*options);
    Output output("verify");
    session.exitStatus = verify(*options, output);
  });
}

}  // namespace wenlolib::tools
