#include "Verify.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>

#include "DocumentJson.h"
#include "Format.h"
#include "Pipeline.h"
#include "Session.h"
#include "Verdicts.h"
#include "VisibleText.h"
#include "base/EnumTable.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t wordColumns = 11;  // the longest word and two blanks

constexpr auto examples =
    "A folder is searched for *.PLM and *.ALM with all that is in it, in the folder's\n"
    "own order; unfinished files and links to folders are passed over. A file that is\n"
    "named is always examined. Paths are taken as they stand, whatever --root is.\n"
    "Exit status: 0 all are sound, 1 some are not, 2 wrong usage, or something could\n"
    "not be read.\n"
    "\n"
    "  truncated  the end is missing\n"
    "  damaged    the form is broken inside\n"
    "  altered    well formed, but the checksum belongs to another content\n"
    "  repaired   stray markup was escaped before the document was stored, so that\n"
    "             the checksum belongs to the text before that; the document can be\n"
    "             read all the same\n"
    "  illegible  whole, but the contents cannot be decrypted; above all where there\n"
    "             was no date to encrypt them by\n"
    "\n"
    "Examples:\n"
    "  wenlolib verify Quillmere_Log_Album_2611.ALM\n"
    "  wenlolib verify --quiet --jobs 4 incoming/\n"
    "  wenlolib verify --json incoming/ | jq -r 'select(.sound | not) | .path'";

/// How many documents of each kind.
class Counts {
 public:
  void add(const Answer& answer) {
    ++(answer.status == wrongUsage ? unreadable_ : counts_[answer.condition]);
  }

  [[nodiscard]] std::string summary() const {
    std::uint64_t documents = 0;
    std::string parts;
    for (const Condition condition : enumerators<Condition>) {
      const std::uint64_t count = counts_[condition];
      documents += count;
      if (count == 0) continue;
      parts += parts.empty() ? ": " : ", ";
      parts += grouped(count) + " " + std::string(word(condition));
    }
    const std::string unreadable =
        unreadable_ == 0 ? "" : "; " + grouped(unreadable_) + " could not be read";
    return counted(documents, "document") + parts + unreadable + "\n";
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
  answer.status = verdict.sound() ? allGood : notGood;
  if (options.quiet && verdict.sound()) return answer;
  answer.output = options.json ? verdictJson(candidate.path, bytes.size(), verdict)
                               : verdictLine(candidate.path, verdict, style);
  return answer;
}

}  // namespace

std::string verdictLine(std::string_view path, const receiver::Verdict& verdict,
                        const Style& style) {
  const Condition condition = conditionOf(verdict);
  std::string line(word(condition));
  line.resize(wordColumns, ' ');
  line = style.paint(colourOf(condition), line) + visibleInLine(path);
  if (!verdict.sound()) {
    line += ": " + visibleInLine(description(verdict));
    if (style.columns > 0) line = wrapped(line, style.columns, wordColumns);
  }
  return line + "\n";
}

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
  call->add_option("PATH", options->paths, "Documents, and folders of documents")
      ->type_name("")
      ->required();
  call->add_flag("--json", options->json, "One JSON object a document, one a line");
  call->add_flag("--quiet,-q", options->quiet, "Show only what is not sound");
  call->add_option("--jobs,-j", options->jobs, "Work on N documents at a time (1)")
      ->type_name("N")
      ->check(CLI::Range(1, 256).description(""));
  call->footer(examples);
  call->callback([options, &session] {
    Output output("verify");
    session.exitStatus = verify(*options, output);
  });
}

}  // namespace wenlolib::tools
