#include "Explanation.h"

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "Format.h"
#include "ReasonText.h"
#include "RecordedFacts.h"
#include "ValueText.h"
#include "Watched.h"
#include "base/EnumTable.h"
#include "base/Integer.h"
#include "toolkit/Folders.h"
#include "toolkit/Names.h"
#include "toolkit/Preferences.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

struct Context {
  RecordKind kind;
  std::uint32_t option;
  const AskedFacts& asked;
  const Sources& sources;
};

std::string fileText(const std::string& root, const Text& replacement, std::string_view name) {
  if (replacement) return *replacement;
  const Text path = configurationPath(name);
  return path ? root + *path : "no file: the user has no home folder";
}

std::string preferenceSource(const Context& context) {
  return fileText(context.sources.root, context.sources.preferences, preferenceFile);
}

const PreferenceReading& readingFor(const Step& step, const Context& context) {
  return context.asked.readings[step.reading - 1];
}

std::string preferencesText(const PreferenceReading& reading) {
  if (reading.preferences) {
    const std::string keys = "a dictionary of " + counted(reading.preferences->size(), "key");
    return reading.trouble.empty() ? keys : keys + "; it " + reading.trouble;
  }
  if (reading.kind == platform::Kind::nothing) return "no file";
  if (reading.kind == platform::Kind::folder) return "a folder";
  return "a file that " + reading.trouble;
}

void describeOS(Step& step, const Context& context) {
  const FoundVersion& os = *context.asked.os;
  step.source = "the system's version";
  step.expected = "a known version";
  step.found = os.number == -1 ? "none" : versionText(os.text, os.number);
  step.remedy = "The kernel's release (uname -r) has to begin with two numbers.";
}

void describeLibrary(Step& step, const Context& context) {
  const FoundVersion& library = *context.asked.library;
  step.source = library.installed ? context.sources.root + std::string(installedBundlePath)
                                  : "the running library's bundle";
  step.key = library.installed ? bundleVersionKey : shortVersionKey;
  step.expected = "a version such as 1.0.0, since the OS is " +
                  versionText(context.asked.upperBound.value_or(-1)) + " or later";
  step.found = versionText(library.text, library.number);
  step.remedy = library.installed ? "Install the library's bundle at this path."
                                  : "Load the library from its bundle, Contents/Info.plist in it.";
}

void describeList(Step& step, const Context& context) {
  const ListLookup& list = *context.asked.list;
  const std::int32_t os = context.asked.os->number;
  const std::string least =
      CommonTooWenlolib::convertVersionNumToStr(os).value_or("the OS version");
  step.source = fileText(context.sources.root, context.sources.supportList, supportVersionListFile);
  step.key = list.key.value_or("");
  step.expected = "a text, " + least + " or later";
  step.found = list.readable ? valueText(list.entry ? &*list.entry : nullptr)
                             : "no list: the file " + list.trouble;
  step.remedy = "Whoever installs the library has to list " + least + " or later under this key.";
}

void describeMode(Step& step, const Context& context) {
  step.source = "the option word, its low four bits";
  step.expected = "mode 0, 1 or 2";
  step.found =
      "option " + decimal(context.option) + ", mode " + decimal(optionMode(context.option));
  step.remedy = "The host has to pass an option of mode 0, 1 or 2.";
}

void describePreferences(Step& step, const Context& context) {
  step.source = preferenceSource(context);
  step.expected = "a property list, a dictionary at its root";
  step.found = preferencesText(readingFor(step, context));
  step.remedy =
      "The host writes this file. To have one to start from: wenlolib init --sample-preferences";
}

void describeDate(Step& step, const Context& context) {
  step.source = preferenceSource(context);
  step.key = "InstalledDate";
  step.expected = "a date";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The host has to store here, as a date, when it was installed.";
}

void describePeriod(Step& step, const Context& context) {
  const Value* installed = entry(readingFor(step, context).preferences, "InstalledDate");
  const std::chrono::days period = periods[context.kind];
  const std::string days = decimal(period.count()) + " days";
  step.source = "the clock, and InstalledDate";
  const Instant* date = installed == nullptr ? nullptr : installed->date();
  if (date != nullptr) {
    step.expected =
        "before " + instantText(*date + period) + ", " + days + " after the installation";
  }
  step.found = instantText(*context.asked.now);
  step.remedy = "The period of " + days + " begins anew with an installation.";
}

void describeAgreement(Step& step, const Context& context) {
  step.source = preferenceSource(context);
  step.key = "LatestSelectedAgreement";
  step.expected = "a boolean or number other than zero";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The user has to agree in the host, which stores it here as a boolean.";
}

/// What was read, expected and found at a gate.
using Description = void (*)(Step&, const Context&);
constexpr EnumTable<Gate, Description> descriptions({
    {Gate::none, nullptr},  // no step is taken at it
    {Gate::osVersion, describeOS},
    {Gate::libraryVersion, describeLibrary},
    {Gate::supportVersionList, describeList},
    {Gate::mode, describeMode},
    {Gate::preferences, describePreferences},
    {Gate::installationDate, describeDate},
    {Gate::period, describePeriod},
    {Gate::agreement, describeAgreement},
});

}  // namespace

std::string_view reasonCode(const Explanation& explanation) {
  if (!explanation.unanswered.empty()) return "no_answer";
  return gateNames[explanation.refusedBy].reason;
}

Explanation explain(RecordKind kind, std::uint32_t option, const Sources& sources) {
  const Watched watched(platform::current());
  const platform::Substitute substitute(watched.services());
  PlatformFacts facts;
  RecordedFacts recorded(facts, watched.seen().lists);
  std::vector<DecisionStep> steps;
  Explanation explanation{kind, option, Gate::none, {}, {}};
  bool isAllowed = false;
  try {
    explanation.refusedBy = refusal(recorded, kind, option, &steps);
    isAllowed = explanation.refusedBy == Gate::none;
  } catch (const platform::NoAnswer&) {
    // What was seen says why. The library answers no.
  }
  if (!isAllowed && watched.seen().unanswered) {
    explanation.unanswered = unansweredText(*watched.seen().unanswered);
  }
  for (const DecisionStep& reported : steps) {
    Step step{reported, {}, {}, {}, {}, {}};
    if (step.taken()) descriptions[step.gate](step, {kind, option, recorded.asked(), sources});
    if (step.state != StepState::refused) step.remedy.clear();
    explanation.steps.push_back(std::move(step));
  }
  return explanation;
}

}  // namespace wenlolib::tools
