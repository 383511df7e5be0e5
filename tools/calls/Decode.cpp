#include "calls/Decode.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <utility>

#include "calls/CommandLine.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"

namespace wenlolib::tools {
namespace {

constexpr auto examples =
    "Searches folders and their sub-folders for *.PLM and *.ALM, in the order of the\n"
    "bytes of their names. Passes over unfinished files and links to folders. For a\n"
    "document that is not sound, shows the verdict and what can be found. PATH is\n"
    "used as given; --root does not apply to it. Exit status: 0 all are sound, 1 some\n"
    "are not or a folder has no documents, 2 wrong usage, 3 something could not be\n"
    "read.\n"
    "\n"
    "In JSON, a text that is not UTF-8 is null; NAME_hex holds its bytes. If trusted\n"
    "is false, nothing vouches for fields and contents.\n"
    "--redact hides the identifier and the serial number in file names, other fields\n"
    "and contents too, unless they have fewer than four characters.\n"
    "\n"
    "Examples:\n"
    "  wenlolib decode QX200_1.PLM\n"
    "  wenlolib decode --contents Quillmere_Log_Album_2611.ALM > usage.txt\n"
    "  wenlolib preview app --name Album usage.txt --bytes | wenlolib decode -\n"
    "  wenlolib decode --json --redact --jobs 4 incoming/ > records.jsonl";

Answer contentsAlone(const Candidate& candidate, receiver::Report report) {
  Answer answer;
  answer.path = candidate.path;
  if (!report.verdict.sound()) {
    answer.complaint = verdictText(report.verdict);
  }
  if (report.document) {
    answer.output = receiver::contentsOf(std::move(*report.document)).value_or("");
  } else if (report.found) {
    answer.output = receiver::contentsOf(*report.found).value_or("");
  }
  return answer;
}

Answer wholeDocument(const Candidate& candidate, std::string_view bytes,
                     const receiver::Report& report, const DecodeOptions& options,
                     const Style& style) {
  const Redaction redaction = options.redact ? Redaction(report) : Redaction();
  const receiver::Document* const document = redaction.shown(report);
  const std::optional<std::string> contents =
      document == nullptr ? std::nullopt : receiver::contentsOf(*document);
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

}  // namespace

int decode(const DecodeOptions& options, Output& output) {
  const Style style = output.style();
  const Passage passage = goThrough(
      options.documents,
      [&](const Candidate& candidate, std::string_view bytes) {
        return decodeDocument(candidate, bytes, options, style);
      },
      output,
      [&](const Answer& answer) {
        if (options.json && answer.status == unreadable) {
          output.write(unreadableJson(answer.path, answer.complaint));
        }
      });
  output.finish();
  return passage.status;
}

void addDecode(CLI::App& app, Session& session) {
  const auto options = std::make_shared<DecodeOptions>();
  CLI::App* const call = app.add_subcommand("decode", "Show what documents say");
  call->add_flag("--json", options->json, "One JSON object for each document, on its own line");
  call->add_flag("--redact", options->redact,
                 "Leave out installation identifier and serial number");
  call->add_flag("--contents", options->contents, "Write only the decrypted contents");
  addDocuments(*call, options->documents);
  call->footer(examples);
  call->callback([options, &session] {
    checkDocuments(options->documents);
    if (options->contents && (options->json || options->redact)) {
      throw CLI::ValidationError("--contents", "cannot be used with --json or --redact");
    }
    Output output("decode");
    session.exitStatus = decode(*options, output);
  });
}

}  // namespace wenlolib::tools
