// `wenlolib record`: hands a record to the library.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <memory>
#include <system_error>

#include "calls/CommandLine.h"
#include "calls/RecordInput.h"
#include "explain/Explanation.h"
#include "library/RecordFolder.h"
#include "library/ToolPlatform.h"
#include "library/Wording.h"
#include "terminal/Format.h"
#include "terminal/Output.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

/// Explains on standard error why the library did not record.
void tellRefusal(Output& output, const ToolPlatform& platform, const RecordRequest& request,
                 const std::optional<Unanswered>& unanswered) {
  if (unanswered) {
    output.complain(request.name, "not recorded: " + unansweredText(*unanswered));
    return;
  }
  const platform::Substitute substitute(platform.services());
  Explanation decision = explain(request.kind, request.option, {platform.root(), {}, {}});
  if (decision.allowed()) {
    output.complain(request.name,
                    "not recorded, although it is allowed now: memory ran out, or the settings "
                    "have just changed. Try again.");
    return;
  }
  decision.afterwards = obstacles(platform, request.kind);
  output.complain(request.name, "refused (" + std::string(reasonCode(decision)) + ")");
  Output explanation("record", stderr);
  explanation.write("\n" +
                    explanationText(decision, explanation.style(), platform.realSupportFolder()));
  explanation.finish();
}

void tellNothing(Output& output, const ToolPlatform& platform, const RecordArguments& arguments,
                 const RecordRequest& request, const RecordOutcome& outcome) {
  if (!outcome.document && outcome.answer) {
    complainOfValues(arguments, "not written, although the library answered true", output);
    return;
  }
  if (!outcome.document) return tellRefusal(output, platform, request, outcome.unanswered);
  const WrittenDocument& document = *outcome.document;
  output.complain(platform.real(document.path),
                  document.kept
                      ? fmt::format("not recorded: it would replace {}", replacedText(request.kind))
                      : whyNotWritten(document.outcome.reason));
}

void tellDocument(Output& output, const ToolPlatform& platform, const RecordRequest& request,
                  const WrittenDocument& document) {
  output.write(fmt::format("recorded in {}\n  ({}, contents {})\n",
                           visibleLine(platform.real(document.path)), sizeText(document.size),
                           sizeText(request.contents.size())));
  if (document.replacing) output.write(fmt::format("  replaced {}\n", replacedText(request.kind)));
}

/// Says what happened. The record is written all the same if this cannot be printed: a caller that
/// took it for failed would record again.
void tellWritten(Session& session, Output& output, const ToolPlatform& platform,
                 const RecordRequest& request, const WrittenDocument& document) {
  session.recorded = true;
  std::signal(SIGPIPE, SIG_IGN);
  try {
    tellDocument(output, platform, request, document);
    output.finish();
  } catch (const std::system_error& failure) {
    Output("record").complain(platform.real(document.path),
                              std::string("recorded, but not reported: ") + failure.what());
  }
}

void recordTo(Session& session, const RecordArguments& arguments) {
  const ToolPlatform platform(session.root);
  Output output("record");
  if (!arguments.file && isTerminal(stdin)) {
    output.complain("FILE",
                    "missing, and standard input is a terminal; give - to type the contents");
    session.exitStatus = wrongUsage;
    return;
  }
  ContentsInput input = readContents(arguments.file.value_or("-"));
  if (!input.complaint.empty()) {
    output.complain(arguments.file.value_or("-"), input.complaint);
    session.exitStatus = unreadable;
    return;
  }
  RecordRequest request = requestOf(arguments, output);
  request.contents = std::move(input.contents);
  const RecordOutcome outcome = record(platform.services(), request);
  if (outcome.written()) {
    tellWritten(session, output, platform, request, *outcome.document);
  } else {
    tellNothing(output, platform, arguments, request, outcome);
    output.finish();
    session.exitStatus = notGood;
  }
}

void addKind(CLI::App& call, Session& session, RecordKind kind, const char* name,
             const char* description, const char* examples) {
  const auto arguments = std::make_shared<RecordArguments>();
  arguments->kind = kind;
  CLI::App& one = *call.add_subcommand(name, description);
  addRecordArguments(one, *arguments);
  one.add_flag("--keep", arguments->keep, "Refuse instead of replacing an older record");
  one.footer(examples);
  one.callback([&session, arguments] { recordTo(session, *arguments); });
}

}  // namespace

void addRecord(CLI::App& app, Session& session) {
  CLI::App& call = *app.add_subcommand("record", "Hand a record to the library");
  requireKind(call);
  call.footer(
      "Says where the record went and whether it replaced an older one, or why it was\n"
      "refused. Exit status: 0 recorded, 1 not recorded, 2 wrong usage, 3 FILE could\n"
      "not be read.\n\nExamples:\n"
      "  wenlolib record app --name PhotoAlbum --option 2 usage.txt\n"
      "  wenlolib record printer --name QX200 --sn QX200-0004711 log.txt");
  addKind(call, session, RecordKind::application, "app", "Application usage",
          "Examples:\n"
          "  wenlolib record app --name PhotoAlbum --option 2 usage.txt\n"
          "  echo pages=12 | wenlolib record app --name PhotoAlbum --option 1 -");
  addKind(call, session, RecordKind::printerLog, "printer", "A printer log",
          "Examples:\n"
          "  wenlolib record printer --name QX200 --device-id 'MFG:Orvan;MDL:QX 200;' \\\n"
          "      --sn QX200-0004711 --romver 2.14 log.txt\n"
          "  wenlolib record printer --name QX500 --new-tag-type log.txt");
}

}  // namespace wenlolib::tools
