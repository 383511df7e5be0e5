// `wenlolib explain`: whether a record would be allowed, and why.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "calls/CommandLine.h"
#include "explain/Explanation.h"
#include "explain/Replay.h"
#include "library/RecordFolder.h"
#include "library/ToolPlatform.h"
#include "reading/InputFile.h"
#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

struct Arguments {
  RecordKind kind = RecordKind::application;
  std::string option = "0";
  ReplayedCase replayed;
  bool json = false;
};

/// Why a file of the replayed case cannot be read; "" if it can. A mistyped path is an error, not a
/// case with a missing file.
std::string fileComplaint(const Text& path) {
  std::error_code error;
  if (!path) return "";
  if (::access(path->c_str(), R_OK) != 0) return systemMessage(errno);
  return std::filesystem::is_regular_file(*path, error) ? "" : "not a file that can be read";
}

bool canRead(Output& output, const ReplayedCase& replayed) {
  for (const Text& path : {replayed.preferences, replayed.supportList}) {
    const std::string complaint = fileComplaint(path);
    if (complaint.empty()) continue;
    output.complain(*path, complaint);
    return false;
  }
  return true;
}

void explainTo(Session& session, const Arguments& arguments) {
  Output output("explain");
  if (!canRead(output, arguments.replayed)) {
    session.exitStatus = unreadable;
    return;
  }
  const ToolPlatform platform(session.root);
  const Replay replay(platform.services(), arguments.replayed);
  const platform::Substitute substitute(replay.services());
  const ReplayedCase& replayed = arguments.replayed;
  const Sources sources{platform.root(),           replayed.preferences,
                        replayed.supportList,      replayed.os.has_value(),
                        replayed.date.has_value(), replayed.library.has_value()};
  Explanation explanation = explain(arguments.kind, optionWord(arguments.option), sources);
  // The folders of a case from elsewhere are not here.
  if (replayed.empty()) explanation.afterwards = obstacles(platform, arguments.kind);
  if (arguments.json) {
    output.write(explanationJson(explanation));
  } else {
    output.write(explanationText(explanation, output.style(), platform.realSupportFolder()));
  }
  output.finish();
  session.exitStatus = explanation.allowed() ? allGood : notGood;
}

/// Adds an option whose text `read` turns into `value`; `form` says what is wanted.
template <class Value, class Read>
CLI::Option* addRead(CLI::App& call, const std::string& name, std::optional<Value>& value,
                     const Read& read, const std::string& form, const std::string& description) {
  const auto take = [name, &value, read, form](const std::string& text) {
    value = read(text);
    if (!value) throw CLI::ValidationError(name, text + " is not " + form);
  };
  return call.add_option_function<std::string>(name, take, description);
}

void addReplay(CLI::App& call, Arguments& arguments) {
  ReplayedCase& replayed = arguments.replayed;
  addRead(call, "--os", replayed.os, osVersionFromText,
          "an OS version: give two or three numbers, such as 10.17.0, or unknown",
          "Assume this OS version, such as 10.17.0, or unknown")
      ->type_name("VERSION");
  addRead(call, "--date", replayed.date, dateFromText,
          "a date: give a day such as 2026-11-21, or a time such as 2026-11-21T09:30:00, "
          "with Z or an offset such as +09:00 if it is not local",
          "Assume this time, such as 2026-11-21T09:30:00+09:00")
      ->type_name("DATE");
  addRead(call, "--library-version", replayed.library, libraryVersionFromText,
          "a library version: give two or three numbers, such as 1.0.0, or unknown",
          "Assume this library version, such as 1.0.0, or unknown")
      ->type_name("VERSION");
  call.add_option("--preferences", replayed.preferences, "Use this preference file")
      ->type_name("FILE");
  call.add_option("--support-list", replayed.supportList, "Use this support version list")
      ->type_name("FILE");
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
      "Says gate by gate what was read, expected and found, and what would keep an\n"
      "allowed record from being written. Exit status: 0 allowed, 1 refused, 2 wrong\n"
      "usage, 3 a file could not be read.\n\nExamples:\n"
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
