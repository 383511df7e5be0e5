// `wenlolib explain`: whether a record would be allowed, and why.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <system_error>

#include "calls/CommandLine.h"
#include "explain/Explanation.h"
#include "explain/Replay.h"
#include "library/ToolPlatform.h"
#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

struct Arguments {
  RecordKind kind = RecordKind::application;
  std::string option = "0";
  std::string os, date;
  ReplayedCase replayed;
  bool json = false;
};

void explainTo(Session& session, const Arguments& arguments) {
  const ToolPlatform platform(session.root);
  const Replay replay(platform.services(), arguments.replayed);
  const platform::Substitute substitute(replay.services());
  const Sources sources{platform.root(), arguments.replayed.preferences,
                        arguments.replayed.supportList};
  const Explanation explanation = explain(arguments.kind, optionWord(arguments.option), sources);
  Output output("explain");
  if (arguments.json) {
    output.write(explanationJson(explanation));
  } else {
    output.write(explanationText(explanation, output.paint(), platform.realSupportFolder()));
  }
  output.finish();
  session.exitStatus = explanation.allowed() ? allGood : notGood;
}

/// "" for a file that can be read. A mistyped path is an error, not a case with a missing file.
std::string fileComplaint(const std::string& path) {
  std::error_code error;
  const bool file = std::filesystem::is_regular_file(path, error);
  return file && ::access(path.c_str(), R_OK) == 0 ? "" : path + " is not a file that can be read";
}

void addReplay(CLI::App& call, Arguments& arguments) {
  const auto osSet = [&arguments](const std::string& text) {
    arguments.replayed.os = osVersionFromText(text);
    if (!arguments.replayed.os)
      throw CLI::ValidationError("--os", text + " is not an OS version such as 10.17.0");
  };
  const auto dateSet = [&arguments](const std::string& text) {
    arguments.replayed.date = dateFromText(text);
    if (!arguments.replayed.date)
      throw CLI::ValidationError("--date", text + " is not a date such as 2026-11-21T09:30:00");
  };
  const CLI::Validator readableFile(fileComplaint, "");
  call.add_option_function<std::string>("--os", osSet,
                                        "Assume this OS version, such as 10.17.0, or unknown")
      ->type_name("VERSION");
  call.add_option_function<std::string>("--date", dateSet,
                                        "Assume this time, such as 2026-11-21T09:30:00+09:00")
      ->type_name("DATE");
  call.add_option("--library-version", arguments.replayed.libraryVersion,
                  "Assume this library version, such as 1.0.0")
      ->type_name("VERSION");
  call.add_option("--preferences", arguments.replayed.preferences, "Use this preference file")
      ->type_name("FILE")
      ->check(readableFile);
  call.add_option("--support-list", arguments.replayed.supportList, "Use this support version list")
      ->type_name("FILE")
      ->check(readableFile);
  call.add_flag("--json", arguments.json, "One JSON object instead of text");
}

CLI::App& addKind(CLI::App& call, Session& session, RecordKind kind, const char* name,
                  const char* description) {
  const auto arguments = std::make_shared<Arguments>();
  arguments->kind = kind;
  CLI::App& one = *call.add_subcommand(name, description);
  if (kind == RecordKind::application) addOptionWord(one, arguments->option);
  addReplay(one, *arguments);
  one.callback([&session, arguments] { explainTo(session, *arguments); });
  return one;
}

}  // namespace

void addExplain(CLI::App& app, Session& session) {
  CLI::App& call = *app.add_subcommand("explain", "Explain whether a record is allowed now");
  requireKind(call);
  call.footer(
      "Exit status: 0 allowed, 1 refused, 2 wrong usage.\n\nExamples:\n"
      "  wenlolib explain app --option 1\n"
      "  wenlolib explain printer --json\n"
      "wenlolib explain app --help shows how to replay a case from elsewhere.");
  addKind(call, session, RecordKind::application, "app", "Application usage")
      .footer(
          "Examples:\n"
          "  wenlolib explain app --option 1\n"
          "  wenlolib explain app --option 1 --date 2031-01-01\n"
          "  wenlolib explain app --option 2 --os 10.17.0 --library-version 1.0.0 \\\n"
          "      --support-list List.plist\n"
          "  wenlolib explain app --option 1 --preferences Pref.plist --json");
  addKind(call, session, RecordKind::printerLog, "printer", "A printer log")
      .footer(
          "Examples:\n"
          "  wenlolib explain printer\n"
          "  wenlolib explain printer --preferences Pref.plist --date 2031-01-01T12:00:00Z");
}

}  // namespace wenlolib::tools
