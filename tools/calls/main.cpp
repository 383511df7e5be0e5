// `wenlolib`, the library's command: see, verify, explain.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <system_error>

#include "calls/CommandLine.h"
#include "calls/Usage.h"
#include "library/Wording.h"
#include "platform/linux/BuiltIn.h"
#include "wenlolib/version.h"

namespace {

using namespace wenlolib::tools;

/// False, after a message, if standard output did not take what was written.
bool flushOutput() {
  if (std::fflush(stdout) == 0) return true;
  std::perror("wenlolib: standard output");
  return false;
}

/// Help and version go to standard output, what is wrong to standard error.
int parseFailure(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    std::ostringstream text;
    const int status = app.exit(error, text, text);
    Output output("");
    output.write(text.str());
    output.finish();
    return status;
  }
  std::fputs(usageText(app, error).c_str(), stderr);
  return wrongUsage;
}

std::string rootComplaint(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error) ? "" : path + " is not a folder";
}

void addColour(CLI::App& app) {
  app.add_option_function<std::string>(
         "--color",
         [](const std::string& when) {
           useColours(when == "always"  ? ColourUse::always
                      : when == "never" ? ColourUse::never
                                        : ColourUse::automatic);
         },
         "Use colours: auto (default), always or never")
      ->type_name("WHEN")
      ->check(CLI::Validator(
          [](const std::string& when) {
            const bool known = when == "auto" || when == "always" || when == "never";
            return known ? "" : when + " is not auto, always or never";
          },
          ""));
}

/// Without the last line break, which the parser prints.
std::string versionText() {
  std::string text = fmt::format("wenlolib {}\nbuilt in:\n{}", WENLOLIB_VERSION,
                                 wenlolib::platform::gnulinux::builtInLibraries());
  text.pop_back();
  return text;
}

int run(int count, char** arguments) {
  Session session;
  CLI::App app(firstScreen(), "wenlolib");
  app.set_help_flag("--help,-h", "Show help");
  app.set_version_flag("--version,-V", versionText(),
                       "Show the version and the libraries built in");
  app.add_option("--root", session.root, "Use DIR as the system's root folder")
      ->type_name("DIR")
      ->check(CLI::Validator(rootComplaint, ""));
  app.add_flag("--exit-zero", session.exitZero, "Exit with 0 where it would be 1");
  addColour(app);
  app.require_subcommand(0, 1);
  app.fallthrough();  // these options may also follow the subcommand
  app.formatter(std::make_shared<HelpFormatter>());
  for (const auto add : {addVerify, addDecode, addRows, addCollect, addDiff, addExplain, addPreview,
                         addRecord, addList, addReport, addForget, addPath, addDoctor, addInit}) {
    add(app, session);
  }
  addHelp(app);
  refuseFlagValues(app, {arguments + 1, arguments + count});
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return parseFailure(app, error);
  }
  if (app.get_subcommands().empty()) {
    std::fputs(app.help().c_str(), stderr);
    return wrongUsage;
  }
  if (!flushOutput() && !session.recorded) return unreadable;
  return session.exitZero && session.exitStatus == notGood ? int{allGood} : session.exitStatus;
}

}  // namespace

int main(int count, char** arguments) {
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may not grow is an error like any other
  try {
    return run(count, arguments);
  } catch (const wenlolib::platform::NoAnswer& failure) {
    std::fprintf(stderr, "wenlolib: %s\n", reasonText(failure.reason()).c_str());
    return unreadable;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "wenlolib: %s\n", failure.what());
    return unreadable;
  }
}
