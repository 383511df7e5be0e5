// `wenlolib init`: the folders that a host provides, and preferences to start from.
#include <sys/stat.h>

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
  bool force = false;
};

/// What happened to a folder or file: made now, changed, there before, or not as wanted, and why.
struct Creation {
  enum Kind { now, changed, before, failed };
  Kind kind;
  std::string why;

  Creation(Kind what, std::string reason = "") : kind(what), why(std::move(reason)) {}
};

Creation makeFolder(const std::string& path) {
  platform::Files& files = *platform::current().files;
  const platform::Kind there = files.kindAt(path);
  if (there == platform::Kind::folder) return Creation::before;
  if (there == platform::Kind::other)
    return {Creation::failed, "not made: something else is in its place"};
  const platform::Reason reason = files.createFolder(path, folderMode);
  if (!reason.hasFailed()) return Creation::now;
  return {Creation::failed, "not made: " + reasonWithAdvice(reason)};
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

Creation failure(const platform::Outcome& outcome) {
  return {Creation::failed, "not written: " + reasonWithAdvice(outcome.reason)};
}

/// Stores the agreement in the preference file that is there, and keeps everything else in it.
Creation agree(const std::string& path, const std::string& realPath, bool force) {
  const platform::Platform& platform = platform::current();
  platform::ListReading reading = platform.propertyLists->read(path);
  if (!reading.dictionary || reading.state != platform::ListState::whole) {
    return {Creation::failed, "nothing is changed, because the file is " + listTrouble(reading) +
                                  ". Move it away first."};
  }
  const Value* agreement = entry(reading.dictionary, agreementKey);
  if (agreement != nullptr && agreement->truth().value_or(false)) return Creation::before;
  if (!force) {
    return {Creation::failed, "already there, and not changed: its agreement is " +
                                  valueText(agreement) +
                                  ". Add --force to store that the user "
                                  "has agreed."};
  }
  struct stat status {};
  if (::lstat(realPath.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return {Creation::failed,
            "nothing is changed, because it is not a regular file. Change the "
            "file that it leads to."};
  }
  reading.dictionary->insert_or_assign(std::string(agreementKey), true);
  const auto xml = platform.propertyLists->asXml(*reading.dictionary);
  if (!xml) return {Creation::failed, "nothing is changed: XML cannot hold a value in it"};
  const platform::Outcome outcome = platform.files->writeAtomically(
      path, *xml, status.st_mode & 07777U, platform::Publication::replacing);
  return outcome == platform::Outcome::written ? Creation(Creation::changed) : failure(outcome);
}

Creation makePreferences(const std::string& path, const std::string& realPath,
                         const Arguments& arguments) {
  std::error_code error;
  // A link that leads nowhere is not overwritten either.
  if (std::filesystem::exists(std::filesystem::symlink_status(realPath, error))) {
    return arguments.agree ? agree(path, realPath, arguments.force) : Creation::before;
  }
  const platform::Platform& platform = platform::current();
  const std::string xml = platform.propertyLists->asXml(samplePreferences(arguments.agree)).value();
  const platform::Outcome outcome =
      platform.files->writeAtomically(path, xml, preferenceMode, platform::Publication::asNew);
  if (outcome == platform::Outcome::written) return Creation::now;
  if (outcome == platform::Outcome::taken) return Creation::before;
  return failure(outcome);
}

/// Says what happened to a folder or file. Returns whether it is there now.
bool tell(Output& output, const std::string& realPath, const Creation& creation) {
  if (creation.kind == Creation::failed) {
    output.complain(realPath, creation.why);
    return false;
  }
  const char* word = creation.kind == Creation::now       ? "made          "
                     : creation.kind == Creation::changed ? "changed       "
                                                          : "already there ";
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
  if (!arguments.samplePreferences && !arguments.agree) return good;
  const std::string path = configurationPath(preferenceFile).value_or("");
  const std::string real = platform.real(path);
  return tell(output, real, makePreferences(path, real, arguments)) && good;
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
  call.add_flag("--sample-preferences", arguments->samplePreferences,
                "Also make a preference file, dated now, no agreement");
  CLI::Option* agreement = call.add_flag("--agree", arguments->agree,
                                         "Also make that file, in which the user has agreed");
  call.add_flag("--force", arguments->force, "Also store that in a file that is there")
      ->needs(agreement);
  call.footer(
      "Makes what is missing, for the user who runs it. Changes nothing that is there,\n"
      "except with --agree --force, which keeps everything else in the file. Exit\n"
      "status: 0 all is as asked, 1 something is not, 2 wrong usage.\n\nExamples:\n"
      "  wenlolib init\n"
      "  wenlolib init --sample-preferences --agree\n"
      "  wenlolib init --agree --force\n"
      "  mkdir trial && wenlolib init --root trial");
  call.callback([&session, arguments] { initTo(session, *arguments); });
}

}  // namespace wenlolib::tools
