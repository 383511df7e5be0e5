// `wenlolib init`: the folders that a host provides, and preferences to start from.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <system_error>
#include <utility>

#include "calls/CommandLine.h"
#include "library/ToolPlatform.h"
#include "library/Wording.h"
#include "record/HeaderValues.h"
#include "terminal/Output.h"
#include "terminal/VisibleText.h"
#include "toolkit/Folders.h"
#include "toolkit/Permissions.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

constexpr std::uint32_t preferenceMode = 0600;

struct Arguments {
  bool samplePreferences = false;
  bool agree = false;
};

/// What happened to a folder or file: made now, there before, or not made, and why not.
struct Creation {
  enum Kind { now, before, failed };
  Kind kind;
  std::string why;

  Creation(Kind what, std::string reason = "") : kind(what), why(std::move(reason)) {}
};

Creation makeFolder(const std::string& path) {
  platform::Files& files = *platform::current().files;
  const platform::Kind there = files.kindAt(path);
  if (there == platform::Kind::folder) return Creation::before;
  if (there == platform::Kind::other) return {Creation::failed, "something else is in its place"};
  const platform::Reason reason = files.createFolder(path, folderMode);
  if (!reason.hasFailed()) return Creation::now;
  return {Creation::failed, reasonWithAdvice(reason)};
}

Dictionary samplePreferences(bool agree) {
  const platform::Platform& platform = platform::current();
  Dictionary preferences;
  preferences.emplace(installedDateKey, platform.clock->now());
  preferences.emplace(agreementKey, agree);
  const std::string language = normalisedLocale(platform.user->locale().value_or(""));
  if (!language.empty()) preferences.emplace(languageKey, language);
  return preferences;
}

Creation makePreferences(const std::string& path, const std::string& realPath, bool agree) {
  std::error_code error;
  // A link that leads nowhere is not overwritten either.
  if (std::filesystem::exists(std::filesystem::symlink_status(realPath, error))) {
    return Creation::before;
  }
  const platform::Platform& platform = platform::current();
  const std::string xml = platform.propertyLists->asXml(samplePreferences(agree)).value();
  const platform::Outcome outcome =
      platform.files->writeAtomically(path, xml, preferenceMode, platform::Publication::asNew);
  if (outcome == platform::Outcome::written) return Creation::now;
  if (outcome == platform::Outcome::taken) return Creation::before;
  return {Creation::failed, reasonWithAdvice(outcome.reason)};
}

/// Says what happened to a folder or file. Returns whether it is there now.
bool tell(Output& output, const std::string& realPath, const Creation& creation) {
  if (creation.kind == Creation::failed) {
    output.complain(realPath, "not made: " + creation.why);
    return false;
  }
  const std::string word = creation.kind == Creation::now ? "made          " : "already there ";
  output.write(word + visibleLine(realPath) + "\n");
  return true;
}

bool initialise(Output& output, const ToolPlatform& platform, const Arguments& arguments) {
  bool good = true;
  for (const Text& folder : {CommonTooWenlolib::pliDirPath(1), CommonTooWenlolib::almDirPath(),
                             CommonTooWenlolib::confDirPath()}) {
    if (!folder) {
      output.complain("HOME", "the home folder is not known; set HOME to an absolute path");
      return false;
    }
    good = tell(output, platform.real(*folder), makeFolder(*folder)) && good;
  }
  if (!arguments.samplePreferences) return good;
  const std::string path = configurationPath(preferenceFile).value_or("");
  const std::string real = platform.real(path);
  return tell(output, real, makePreferences(path, real, arguments.agree)) && good;
}

void initTo(Session& session, const Arguments& arguments) {
  const ToolPlatform platform(session.root);
  const platform::Substitute substitute(platform.services());
  Output output("init");
  session.exitStatus = initialise(output, platform, arguments) ? allGood : notGood;
  output.finish();
}

}  // namespace

void addInit(CLI::App& app, Session& session) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& call = *app.add_subcommand("init", "Make the folders that a host provides");
  CLI::Option* sample = call.add_flag("--sample-preferences", arguments->samplePreferences,
                                      "Also make a preference file, dated now, no agreement");
  call.add_flag("--agree", arguments->agree, "Store in that file that the user has agreed")
      ->needs(sample);
  call.footer(
      "Makes what is missing, for the user who runs it. Never overwrites anything.\n"
      "Exit status: 0 everything is there, 1 something is missing, 2 wrong usage.\n\nExamples:\n"
      "  wenlolib init\n"
      "  wenlolib init --sample-preferences --agree\n"
      "  mkdir trial && wenlolib init --root trial");
  call.callback([&session, arguments] { initTo(session, *arguments); });
}

}  // namespace wenlolib::tools
