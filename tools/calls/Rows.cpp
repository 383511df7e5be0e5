#include "calls/Rows.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "calls/CommandLine.h"
#include "documents/RowText.h"

namespace wenlolib::tools {
namespace {

constexpr auto examples =
    "One row for each document, sound or not, always with the same columns and types;\n"
    "man 5 wenlolib lists them. Searches folders for *.PLM, *.ALM and archives:\n"
    "*.tar, *.tar.gz, *.tgz, *.tar.zst. A file that is named may be such an archive\n"
    "whatever its name, unless that ends in .PLM or .ALM, and so may standard input;\n"
    "nothing is unpacked to disk. PATH is used as given; --root does not apply to it.\n"
    "--redact hides the identifier and the serial number, as in wenlolib decode.\n"
    "Exit status: 0 all are sound, 1 some are not or there are none, 2 wrong usage,\n"
    "3 something could not be read; its row says so.\n"
    "\n"
    "Examples:\n"
    "  wenlolib rows incoming/ > rows.jsonl\n"
    "  wenlolib rows --csv --jobs 4 2026-11.tar.zst > rows.csv\n"
    "  ssh host cat day.tar | wenlolib rows - | jq -r 'select(.trusted) | .version'";

std::string text(const Row& row, const RowsOptions& options) {
  return options.csv ? rowCsv(row) : rowJson(row);
}

Answer rowAnswer(const Candidate& candidate, std::string_view bytes, const RowsOptions& options) {
  const receiver::Report report = receiver::examine(bytes);
  const Redaction redaction = options.redact ? Redaction(report) : Redaction();
  Answer answer;
  answer.condition = conditionOf(report.verdict);
  answer.status = canBeReliedOn(*answer.condition) ? allGood : notGood;
  answer.output = text(rowOf(candidate, bytes, report, redaction), options);
  return answer;
}

}  // namespace

int rows(const RowsOptions& options, Output& output) {
  if (options.csv) output.write(csvHeading());
  const Passage passage = goThrough(
      options.documents,
      [&](const Candidate& candidate, std::string_view bytes) {
        return rowAnswer(candidate, bytes, options);
      },
      output,
      [&](const Answer& answer) {
        if (answer.status == unreadable)
          output.write(text(unreadableRow(answer.path, answer.member), options));
      });
  output.finish();
  return passage.status;
}

void addRows(CLI::App& app, Session& session) {
  const auto options = std::make_shared<RowsOptions>();
  options->documents.archives = true;
  CLI::App* const call = app.add_subcommand("rows", "Write a row for each document");
  call->add_flag("--csv", options->csv, "CSV instead of JSON Lines");
  call->add_flag("--redact", options->redact,
                 "Leave out installation identifier and serial number");
  addDocuments(*call, options->documents);
  call->footer(examples);
  call->callback([options, &session] {
    checkDocuments(options->documents);
    Output output("rows");
    session.exitStatus = rows(*options, output);
  });
}

}  // namespace wenlolib::tools
