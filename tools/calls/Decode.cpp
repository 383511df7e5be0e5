// `wenlolib decode`: what documents say.
#include <CLI/CLI.hpp>
#include <memory>
#include <utility>

#include "calls/CommandLine.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "documents/Jobs.h"

namespace wenlolib::tools {
namespace {

struct DecodeOptions {
  std::vector<std::string> paths;
  bool json = false;
  bool contents = false;
  bool redact = false;
  int jobs = defaultJobs;
};

constexpr auto examples =
    "Searches folders and their sub-folders for *.PLM and *.ALM, in the order of each\n"
    "folder. Skips unfinished files and links to folders. For a document that is not\n"
    "sound, shows the verdict and what can be read. PATH is used as given; --root\n"
    "does not apply to it. Exit status: 0 all are sound, 1 some are not, 2 wrong\n"
    "usage, 3 something could not be read.\n"
    "\n"
    "In JSON, a text that is not UTF-8 is null; NAME_hex holds its bytes.\n"
    "--redact hides the identifier and the serial number in file names, other fields\n"
    "and contents too, unless they have fewer than four characters.\n"
    "\n"
    "Examples:\n"
    "  wenlolib decode QX200_1.PLM\n"
    "  wenlolib decode --contents Quillmere_Log_Album_2611.ALM > usage.txt\n"
    "  wenlolib decode --json --redact --jobs 4 incoming/ > records.jsonl";

Answer contentsAlone(const Candidate& candidate, receiver::Report report) {
  Answer answer;
  answer.path = candidate.path;
  if (!report.verdict.sound()) {
    answer.complaint = verdictText(report.verdict);
  }
  if (!report.document) return answer;
  answer.output = receiver::contentsOf(std::move(*report.document)).value_or("");
  return answer;
}

Answer wholeDocument(const Candidate& candidate, std::string_view bytes,
                     const receiver::Report& report, const DecodeOptions& options,
                     const Style& style) {
  const Redaction redaction = options.redact ? Redaction(report) : Redaction();
  const std::optional<std::string> contents =
      report.document ? receiver::contentsOf(*report.document) : std::nullopt;
  Answer answer;
  answer.output =
      options.json ? documentJson(candidate.path, bytes.size(), report, contents, redaction)
                   : documentText(candidate.path, bytes.size(), report, contents, redaction, style);
  return answer;
}

Answer decodeDocument(const Candidate& candidate, std::string_view bytes,
                      const DecodeOptions& options, const Style& style) {
  receiver::Report report = receiver::examine(bytes);
  const Condition condition = conditionOf(report.verdict);
  Answer answer = options.contents ? contentsAlone(candidate, std::move(report))
                                   : wholeDocument(candidate, bytes, report, options, style);
  answer.condition = condition;
  answer.status = canBeReliedOn(condition) ? allGood : notGood;
  return answer;
}

int decode(const DecodeOptions& options, Output& output) {
  const Style style{output.paint(), output.columns()};
  const int status = goThrough(
      options.paths, options.jobs,
      [&](const Candidate& candidate, std::string_view bytes) {
        return decodeDocument(candidate, bytes, options, style);
      },
      output);
  output.finish();
  return status;
}

}  // namespace

void addDecode(CLI::App& app, Session& session) {
  const auto options = std::make_shared<DecodeOptions>();
  CLI::App* const call = app.add_subcommand("decode", "Show what documents say");
  call->add_flag("--json", options->json, "One JSON object for each document, on its own line");
  call->add_flag("--redact", options->redact,
                 "Leave out installation identifier and serial number");
  call->add_flag("--contents", options->contents, "Write only the decrypted contents");
  addDocuments(*call, options->paths, options->jobs);
  call->footer(examples);
  call->callback([options, &session] {
    if (options->contents && (options->json || options->redact)) {
      throw CLI::ValidationError("--contents", "cannot be used with --json or --redact");
    }
    Output output("decode");
    session.exitStatus = decode(*options, output);
  });
}

}  // namespace wenlolib::tools
