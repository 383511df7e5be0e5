#include "explain/Explanation.h"

#include <fmt/format.h>

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "base/EnumTable.h"
#include "explain/RecordedFacts.h"
#include "library/ToolPlatform.h"
#include "library/Wording.h"
#include "terminal/Format.h"
#include "terminal/Json.h"
#include "terminal/VisibleText.h"
#include "toolkit/Folders.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

struct Context {
  RecordKind kind;
  std::uint32_t option;
  const FactNotes& notes;
  const Sources& sources;
};

std::string fileText(const std::string& root, const Text& replacement, std::string_view name) {
  if (replacement) return *replacement;
  const Text path = configurationPath(name);
  return path ? root + *path : "no file: the home folder is not known";
}

std::string preferenceSource(const Context& context) {
  return fileText(context.sources.root, context.sources.preferences, preferenceFile);
}

const PreferenceReading& readingFor(const Step& step, const Context& context) {
  return context.notes.readings[step.reading - 1];
}

std::string preferencesText(const PreferenceReading& reading) {
  if (reading.preferences) {
    const std::string keys = "a dictionary of " + countText(reading.preferences->size(), "key");
    return reading.trouble.empty() ? keys : keys + "; " + reading.trouble;
  }
  return reading.trouble.empty() ? "no file" : reading.trouble;
}

/// A file has no place only if the home folder is not known.
std::string remedyText(const std::string& remedy) {
  return remedy.empty() ? "Set HOME to an absolute path." : remedy;
}

void describeOS(Step& step, const Context& context) {
  const FoundVersion& os = *context.notes.os;
  step.source = context.sources.os ? "--os" : "the system's version";
  step.expected = "a known version";
  step.found = os.number == -1 ? "none" : versionText(os.text, os.number);
  step.remedy = context.sources.os ? "Give a version such as 10.17.0 with --os."
                                   : "The kernel release (uname -r) must begin with two numbers.";
}

/// Where the library's version was read, and what would help.
void describeLibrarySource(Step& step, const Context& context, const FoundVersion& library) {
  if (context.sources.library) {
    step.source = "--library-version";
    step.remedy = "Give a version such as 1.0.0 with --library-version.";
    return;
  }
  step.source = library.installed ? context.sources.root + std::string(installedBundlePath)
                                  : "the running library's bundle";
  step.key = library.installed ? bundleVersionKey : shortVersionKey;
  step.remedy = library.installed
                    ? "Install the library's bundle at this path."
                    : "Load the library from its bundle, with Contents/Info.plist in it.";
}

void describeLibrary(Step& step, const Context& context) {
  const FoundVersion& library = *context.notes.library;
  describeLibrarySource(step, context, library);
  step.expected = fmt::format("a version such as 1.0.0, because the OS is {} or later",
                              versionText(context.notes.upperBound.value_or(-1)));
  step.found = versionText(library.text, library.number);
}

void describeList(Step& step, const Context& context) {
  const ListLookup& list = *context.notes.list;
  const std::int32_t os = context.notes.os->number;
  const std::string least =
      CommonTooWenlolib::convertVersionNumToStr(os).value_or("the OS version");
  step.source = fileText(context.sources.root, context.sources.supportList, supportVersionListFile);
  step.key = list.key.value_or("");
  step.expected = "a text, " + least + " or later";
  if (list.readable) {
    step.found = valueText(list.entry ? &*list.entry : nullptr);
    step.remedy = "Whoever installs the library must list " + least + " or later under this key.";
  } else {
    step.found = list.trouble.empty() ? "no list" : "no list: the file is " + list.trouble;
    step.remedy = remedyText(list.remedy);
  }
}

void describeMode(Step& step, const Context& context) {
  step.source = "the low four bits of the option word";
  step.expected = "mode 0, 1 or 2";
  step.found = fmt::format("option {}, mode {}", context.option, optionMode(context.option));
  step.remedy = "The host must pass an option word of mode 0, 1 or 2.";
}

void describePreferences(Step& step, const Context& context) {
  const PreferenceReading& reading = readingFor(step, context);
  step.source = preferenceSource(context);
  step.expected = "a property list with a dictionary at its root";
  step.found = preferencesText(reading);
  step.remedy = context.sources.preferences
                    ? "Give a preference file that can be read with --preferences."
                    : remedyText(reading.remedy);
}

void describeDate(Step& step, const Context& context) {
  step.source = preferenceSource(context);
  step.key = installedDateKey;
  step.expected = "a date";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The host must store its installation date here, as a date.";
}

void describePeriod(Step& step, const Context& context) {
  const Value* installed = entry(readingFor(step, context).preferences, installedDateKey);
  const std::chrono::days period = periods[context.kind];
  const std::string days = fmt::format("{} days", period.count());
  step.source = std::string(context.sources.date ? "--date" : "the clock") + " and InstalledDate";
  const Instant* date = installed == nullptr ? nullptr : installed->date();
  if (date != nullptr) {
    step.expected =
        fmt::format("before {}, {} after the installation", instantText(*date + period), days);
  }
  step.found = instantText(*context.notes.now);
  step.remedy = "A new installation starts a new period of " + days + ".";
}

void describeAgreement(Step& step, const Context& context) {
  step.source = preferenceSource(context);
  step.key = agreementKey;
  step.expected = "true, or a number other than zero";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The user must agree in the host, which stores the agreement here as a boolean.";
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
  const WatchedPlatform watched(platform::current());
  const platform::Substitute substitute(watched.services());
  PlatformFacts facts;
  RecordedFacts recorded(facts, watched.sightings().lists);
  std::vector<DecisionStep> steps;
  Explanation explanation{kind, option, Gate::none, {}, {}, {}};
  bool isAllowed = false;
  try {
    explanation.refusedBy = refusal(recorded, kind, option, &steps);
    isAllowed = explanation.refusedBy == Gate::none;
  } catch (const platform::NoAnswer&) {
    // The library answers no; the sightings say why.
  }
  if (!isAllowed && watched.sightings().unanswered) {
    explanation.unanswered = unansweredText(*watched.sightings().unanswered);
  }
  for (const DecisionStep& reported : steps) {
    Step step{reported, {}, {}, {}, {}, {}};
    if (step.taken()) descriptions[step.gate](step, {kind, option, recorded.notes(), sources});
    if (step.state != StepState::refused) step.remedy.clear();
    explanation.steps.push_back(std::move(step));
  }
  return explanation;
}

namespace {

constexpr std::size_t detailIndent = 6;
constexpr std::size_t detailWidth = 10;

struct StateNames {
  std::string_view code, text;
  Colour colour;
};

constexpr EnumTable<StepState, StateNames> stateNames({
    {StepState::passed, {"passed", "passed", Colour::good}},
    {StepState::refused, {"refused", "refused", Colour::bad}},
    {StepState::notNeeded, {"not_needed", "not needed", Colour::faint}},
    {StepState::notReached, {"not_reached", "not reached", Colour::faint}},
});

std::string heading(const Explanation& explanation) {
  if (explanation.kind == RecordKind::printerLog) return "Printer log";
  return fmt::format("Application usage, option {} (mode {})", explanation.option,
                     optionMode(explanation.option));
}

/// A line of a step. Only a path may be wider than the text, so that it can be copied whole.
std::string detail(const Style& style, const char* name, const std::string& text,
                   bool whole = false) {
  if (text.empty()) return "";
  std::string line = std::string(detailIndent, ' ') + name;
  line.resize(detailIndent + detailWidth, ' ');
  line += text;
  return (whole ? line : wrap(line, style.textWidth(), detailIndent + detailWidth)) + "\n";
}

/// What was read, expected and found; nothing of a step that was not taken.
std::string details(const Step& step, const Style& style, const std::string& folder) {
  const bool isPath = step.source.find('/') != std::string::npos;
  return detail(style, "read", shortPath(step.source, folder), isPath) +
         detail(style, "key", visibleLine(step.key), true) +
         detail(style, "expected", step.expected) + detail(style, "found", step.found) +
         detail(style, "remedy", step.remedy);
}

std::string stepText(int number, const Step& step, const Style& style, const std::string& folder) {
  constexpr std::size_t stateWidth = 13;
  constexpr std::size_t titleIndent = stateWidth + 5;
  const StateNames& state = stateNames[step.state];
  const std::string blanks(stateWidth - state.text.size(), ' ');
  const std::string title =
      wrap(std::string(titleIndent, ' ') + stepTitle(step), style.textWidth(), titleIndent)
          .substr(titleIndent);
  return fmt::format("  {}  {}{}{}\n{}", number, style.paint(state.colour, state.text), blanks,
                     title, details(step, style, folder));
}

}  // namespace

std::string stepTitle(const Step& step) {
  return std::string(gateNames[step.gate].title) +
         (step.gate == Gate::preferences && step.reading > 1 ? ", read again" : "");
}

std::string_view stateText(StepState state) {
  return stateNames[state].text;
}

std::string outcomeText(const Explanation& explanation, const Paint& paint) {
  if (const Obstacle* stop = explanation.stop(); explanation.allowed() && stop != nullptr) {
    return paint(Colour::doubtful, "allowed, but it cannot be written") + ": see below";
  }
  if (explanation.allowed()) return paint(Colour::good, "allowed");
  const std::string refused = paint(Colour::bad, "refused");
  if (!explanation.unanswered.empty()) {
    return fmt::format("{}: {} (no_answer)", refused, explanation.unanswered);
  }
  const GateNames& names = gateNames[explanation.refusedBy];
  return fmt::format("{}: {} ({})", refused, names.title, names.reason);
}

namespace {

std::string obstacleText(const Obstacle& obstacle, const Style& style, const std::string& folder) {
  const std::string state = obstacle.stops ? style.paint(Colour::bad, "fails")
                                           : style.paint(Colour::doubtful, "replaces");
  return fmt::format("     {}\n", state) +
         detail(style, "path", shortPath(obstacle.path, folder), true) +
         detail(style, "found", obstacle.message) + detail(style, "remedy", obstacle.remedy);
}

/// What an allowed record meets after the decision.
std::string afterwardsText(const std::vector<Obstacle>& afterwards, const Style& style,
                           const std::string& folder) {
  std::string text = "\nWriting the record, if it is allowed\n";
  if (afterwards.empty()) return text + "     nothing stands in its way\n";
  for (const Obstacle& obstacle : afterwards) text += obstacleText(obstacle, style, folder);
  return text;
}

}  // namespace

std::string explanationText(const Explanation& explanation, const Style& style,
                            const std::string& supportFolder) {
  std::string text =
      fmt::format("{}\n{}\n\n{}", style.paint(Colour::heading, heading(explanation)),
                  outcomeText(explanation, style.paint), shortFolderText(supportFolder));
  int number = 0;
  for (const Step& step : explanation.steps) {
    text += stepText(++number, step, style, supportFolder);
  }
  const auto& afterwards = explanation.afterwards;
  if (afterwards && (explanation.allowed() || !afterwards->empty())) {
    text += afterwardsText(*afterwards, style, supportFolder);
  }
  return text;
}

namespace {

Json afterwardsJson(const std::vector<Obstacle>& afterwards) {
  Json all = Json::array();
  for (const Obstacle& obstacle : afterwards) {
    Json one = {{"code", obstacle.code}, {"stops", obstacle.stops}};
    putIfAny(one, "path", obstacle.path);
    putIfAny(one, "found", obstacle.message);
    putIfAny(one, "remedy", obstacle.remedy);
    all.push_back(std::move(one));
  }
  return all;
}

}  // namespace

std::string explanationJson(const Explanation& explanation) {
  const bool application = explanation.kind == RecordKind::application;
  Json json = jsonObject("decision");
  json["record"] = recordCode(explanation.kind);
  json["option"] = application ? Json(explanation.option) : Json();
  json["mode"] = application ? Json(optionMode(explanation.option)) : Json();
  json["allowed"] = explanation.allowed();
  json["reason"] = reasonCode(explanation);
  putIfAny(json, "no_answer", explanation.unanswered);
  json["steps"] = Json::array();
  for (const Step& step : explanation.steps) {
    Json one = {{"gate", gateNames[step.gate].code}, {"state", stateNames[step.state].code}};
    one["reading"] = step.gate == Gate::preferences ? Json(step.reading) : Json();
    putIfAny(one, "source", step.source);
    putIfAny(one, "key", step.key);
    putIfAny(one, "expected", step.expected);
    putIfAny(one, "found", step.found);
    putIfAny(one, "remedy", step.remedy);
    json["steps"].push_back(std::move(one));
  }
  json["afterwards"] = explanation.afterwards ? afterwardsJson(*explanation.afterwards) : Json();
  return jsonLine(json);
}

}  // namespace wenlolib::tools
