#include "ExplanationSteps.h"

#include <string>

#include "Format.h"
#include "ValueText.h"
#include "base/Integer.h"
#include "toolkit/CommonTooWenlolib.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "toolkit/OptionMode.h"
#include "toolkit/Paths.h"

namespace wenlolib::tools {
namespace {

constexpr double secondsADay = 86400;

/// The period of a kind of record, and its length in days for a person.
Seconds periodOf(RecordKind kind) {
  return kind == RecordKind::application ? applicationPeriod : printerLogPeriod;
}

std::string daysText(RecordKind kind) {
  return decimal(static_cast<std::int64_t>(periodOf(kind).count() / secondsADay)) + " days";
}

std::string fileText(const std::string& root, const Text& replacement, std::string_view name) {
  if (replacement) return *replacement;
  const Text path = configurationPath(name);
  return path ? root + *path : "no file: the user has no home folder";
}

std::string preferenceSource(const StepContext& context) {
  return fileText(context.sources.root, context.sources.preferences, preferenceFile);
}

const PreferenceReading& readingFor(const Step& step, const StepContext& context) {
  return context.asked.readings[step.reading - 1];
}

std::string preferencesText(const PreferenceReading& reading) {
  if (reading.preferences) {
    return "a dictionary of " + counted(reading.preferences->size(), "key");
  }
  if (reading.kind == platform::Kind::nothing) return "no file";
  if (reading.kind == platform::Kind::folder) return "a folder";
  return "a file that cannot be read as a dictionary";
}

void describeOS(Step& step, const StepContext& context) {
  const FoundVersion& os = *context.asked.os;
  step.source = "the system's version";
  step.expected = "a known version";
  step.found = os.number == -1 ? "none" : versionText(os.text, os.number);
  step.remedy = "The kernel's release (uname -r) has to begin with two numbers.";
}

void describeLibrary(Step& step, const StepContext& context) {
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

void describeList(Step& step, const StepContext& context) {
  const ListLookup& list = *context.asked.list;
  const std::int32_t os = context.asked.os->number;
  const std::string least =
      CommonTooWenlolib::convertVersionNumToStr(os).value_or("the OS version");
  step.source = fileText(context.sources.root, context.sources.supportList, supportVersionListFile);
  step.key = list.key.value_or("");
  step.expected = "a text, " + least + " or later";
  step.found = list.readable ? valueText(list.entry ? &*list.entry : nullptr)
                             : "no list that can be read as a dictionary";
  step.remedy = "Whoever installs the library has to list " + least + " or later under this key.";
}

void describeMode(Step& step, const StepContext& context) {
  step.source = "the option word, its low four bits";
  step.expected = "mode 0, 1 or 2";
  step.found =
      "option " + decimal(context.option) + ", mode " + decimal(optionMode(context.option));
  step.remedy = "The host has to pass an option of mode 0, 1 or 2.";
}

void describePreferences(Step& step, const StepContext& context) {
  step.source = preferenceSource(context);
  step.expected = "a property list, a dictionary at its root";
  step.found = preferencesText(readingFor(step, context));
  step.remedy =
      "The host writes this file. To have one to start from: wenlolib init --sample-preferences";
}

void describeDate(Step& step, const StepContext& context) {
  step.source = preferenceSource(context);
  step.key = "InstalledDate";
  step.expected = "a date";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The host has to store here, as a date, when it was installed.";
}

void describePeriod(Step& step, const StepContext& context) {
  const Value* installed = entry(readingFor(step, context).preferences, "InstalledDate");
  step.source = "the clock, and InstalledDate";
  const Instant* date = installed == nullptr ? nullptr : installed->date();
  if (date != nullptr) {
    step.expected = "before " + instantText(*date + periodOf(context.kind)) + ", " +
                    daysText(context.kind) + " after the installation";
  }
  step.found = instantText(*context.asked.now);
  step.remedy = "The period of " + daysText(context.kind) + " begins anew with an installation.";
}

void describeAgreement(Step& step, const StepContext& context) {
  step.source = preferenceSource(context);
  step.key = "LatestSelectedAgreement";
  step.expected = "a boolean or number other than zero";
  step.found = valueText(entry(readingFor(step, context).preferences, step.key));
  step.remedy = "The user has to agree in the host, which stores it here as a boolean.";
}

}  // namespace

void describe(Step& step, const StepContext& context) {
  using Describer = void (*)(Step&, const StepContext&);
  static constexpr Describer describers[] = {nullptr,      describeOS,     describeLibrary,
                                             describeList, describeMode,   describePreferences,
                                             describeDate, describePeriod, describeAgreement};
  describers[static_cast<std::size_t>(step.gate)](step, context);
  if (step.state != StepState::refused) step.remedy.clear();
}

}  // namespace wenlolib::tools
