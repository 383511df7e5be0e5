// `wenlolib doctor`: is the installation healthy?
#include <CLI/CLI.hpp>
#include <memory>

#include "calls/CommandLine.h"
#include "doctor/Examination.h"
#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

void doctorTo(Session& session, bool json, bool clean) {
  const ToolPlatform platform(session.root);
  const platform::Substitute substitute(platform.services());
  const Findings findings = examine(platform, clean);
  Output output("doctor");
  output.write(json ? findingsJson(findings)
                    : findingsText(findings, output.paint(), platform.realSupportFolder()));
  output.finish();
  session.exitStatus = hasErrors(findings) ? notGood : allGood;
}

}  // namespace

void addDoctor(CLI::App& app, Session& session) {
  const auto json = std::make_shared<bool>(false);
  CLI::App& call = *app.add_subcommand("doctor", "Check whether the installation is healthy");
  const auto clean = std::make_shared<bool>(false);
  call.add_flag("--json", *json, "One JSON object for each finding");
  call.add_flag("--clean", *clean, "Remove unfinished files that killed programs left");
  call.footer(
      "Examines the user's folders and files. Changes nothing without --clean, which\n"
      "removes files called .wenlolib-*.tmp that are at least a day old from the\n"
      "folders of records and configuration, and says which. Exit status: 0 no errors,\n"
      "1 at least one error, 2 wrong usage.\n\nExamples:\n"
      "  wenlolib doctor\n"
      "  wenlolib doctor --clean\n"
      "  wenlolib doctor --json | grep -v '\"level\":\"ok\"'\n"
      "  sudo -H -u ada wenlolib doctor");
  call.callback([&session, json, clean] { doctorTo(session, *json, *clean); });
}

}  // namespace wenlolib::tools
