// `wenlolib doctor`: is the installation healthy?
#include <CLI/CLI.hpp>
#include <memory>

#include "calls/CommandLine.h"
#include "doctor/Examination.h"
#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

struct Arguments {
  bool json = false;
  ExaminationOptions options;
};

void doctorTo(Session& session, const Arguments& arguments) {
  const ToolPlatform platform(session.root);
  const platform::Substitute substitute(platform.services());
  const Findings findings = examine(platform, arguments.options);
  Output output("doctor");
  output.write(arguments.json
                   ? findingsJson(findings)
                   : findingsText(findings, output.style(), platform.realSupportFolder()));
  output.finish();
  session.exitStatus = hasErrors(findings) ? notGood : allGood;
}

}  // namespace

void addDoctor(CLI::App& app, Session& session) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& call = *app.add_subcommand("doctor", "Check whether the installation is healthy");
  call.add_flag("--json", arguments->json, "One JSON object for each finding");
  call.add_flag("--clean", arguments->options.clean,
                "Remove unfinished files that killed programs left");
  call.add_option("--plugin", arguments->options.plugin,
                  "Examine this plug-in instead of the installed one")
      ->type_name("PATH");
  call.footer(
      "Examines the user's folders and files, and the plug-in, which it loads in a\n"
      "process of its own. Changes nothing without --clean, which removes files called\n"
      ".wenlolib-*.tmp that are at least a day old from the folders of records and\n"
      "configuration, and says which. --root does not apply to the plug-in. Exit\n"
      "status: 0 no errors, 1 at least one error, 2 wrong usage.\n\nExamples:\n"
      "  wenlolib doctor\n"
      "  wenlolib doctor --plugin WENLOLIB.bundle\n"
      "  wenlolib doctor --clean\n"
      "  wenlolib doctor --json | grep -v '\"level\":\"ok\"'\n"
      "  sudo -H -u ada wenlolib doctor");
  call.callback([&session, arguments] { doctorTo(session, *arguments); });
}

}  // namespace wenlolib::tools
