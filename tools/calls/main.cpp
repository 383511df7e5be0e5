// `wenlolib`, the library's command: see, verify, explain.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "calls/CommandLine.h"
#include "library/Wording.h"
#include "platform/linux/BuiltIn.h"
#include "terminal/VisibleText.h"
#include "wenlolib/version.h"

namespace {

using namespace wenlolib::tools;

/// False, after a message, if standard output did not take what was written.
bool flushOutput() {
  if (std::fflush(stdout) == 0) return true;
  std::perror("wenlolib: standard output");
  return false;
}

/// Names the first word that has no meaning in its place.
std::string extraWordText(const CLI::App& app) {
  const std::vector<std::string> words = app.remaining(true);
  const auto option = std::ranges::find_if(
      words, [](const std::string& word) { return word.size() > 1 && word.front() == '-'; });
  if (option != words.end()) return visibleLine(*option) + ": no such option here";
  const std::string word = words.empty() ? "" : visibleLine(words.front());
  if (app.get_subcommands().empty()) return word + ": no such subcommand";
  return word + ": one argument too many";
}

/// Usage errors say what is wrong and where to read more; help and version go to standard output.
int parseFailure(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) {
    const int status = app.exit(error);
    std::cout.flush();
    return flushOutput() && std::cout ? status : int{unreadable};
  }
  const bool extra = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  const std::string what = extra ? extraWordText(app) : visibleLine(error.what());
  std::fprintf(stderr, "wenlolib: %s\nTry wenlolib --help, or wenlolib SUBCOMMAND --help.\n",
               what.c_str());
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
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""));
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
  app.set_version_flag("--version", versionText(), "Show the version and the libraries built in");
  app.add_option("--root", session.root, "Use DIR as the system's root folder")
      ->type_name("DIR")
      ->check(CLI::Validator(rootComplaint, ""));
  addColour(app);
  app.require_subcommand(0, 1);
  app.fallthrough();  // --root and --color may also follow the subcommand
  app.formatter(std::make_shared<HelpFormatter>());
  for (const auto add :
       {addVerify, addDecode, addDiff, addExplain, addPreview, addRecord, addDoctor, addInit}) {
    add(app, session);
  }
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    return parseFailure(app, error);
  }
  if (app.get_subcommands().empty()) {
    std::fputs(app.help().c_str(), stderr);
    return wrongUsage;
  }
  return flushOutput() ? session.exitStatus : int{unreadable};
}

}  // namespace

int main(int count, char** arguments) {
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
