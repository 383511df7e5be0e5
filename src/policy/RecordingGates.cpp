#include "policy/RecordingGates.h"

#include <algorithm>

#include "platform/Platform.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {

// --- The facts ---

std::int32_t PlatformFacts::upperOSVersion() {
  return CommonTooWenlolib::supportUpperOSVersion();
}

std::int32_t PlatformFacts::osVersion() {
  return CommonTooWenlolib::systemVersionNum();
}

std::int32_t PlatformFacts::runningLibraryVersion() {
  const auto information = platform::current().bundles->ownInformation();
  return CommonTooWenlolib::convertVersionStrToNum(textEntry(information, shortVersionKey));
}

std::int32_t PlatformFacts::installedLibraryVersion() {
  return CommonTooWenlolib::moduleVersionFromBundle();
}

std::int32_t PlatformFacts::listAnswer(std::int32_t libraryVersion) {
  return CommonTooWenlolib::getandcompLocalSupportVersion(libraryVersion);
}

std::optional<Dictionary> PlatformFacts::preferences() {
  return hostPreferences();
}

Instant PlatformFacts::now() {
  return platform::current().clock->now();
}

// --- The decision ---

namespace {

/// What a decision depends on, and what it has found out so far.
struct Course {
  SupportFacts& facts;
  RecordKind kind;
  std::uint32_t mode;
  std::int32_t upperBound = 0;
  std::int32_t os = -1;
  std::int32_t library = -1;
  std::optional<Dictionary> preferences = std::nullopt;
  Instant installed = {};
};

using Question = bool (*)(const Course&);

bool always(const Course&) {
  return true;
}

bool forApplications(const Course& course) {
  return course.kind == RecordKind::application;
}

bool inModeZero(const Course& course) {
  return forApplications(course) && course.mode == 0;
}

bool whereListed(const Course& course) {
  return listCounts(course.os, course.upperBound);
}

bool butInModeTwo(const Course& course) {
  return !forApplications(course) || course.mode != 2;
}

using Passage = bool (*)(Course&);

bool knowsOS(Course& course) {
  course.upperBound = course.facts.upperOSVersion();
  course.os = course.facts.osVersion();
  return course.os != -1;
}

bool knowsLibrary(Course& course) {
  course.library = forApplications(course) ? course.facts.runningLibraryVersion()
                                           : course.facts.installedLibraryVersion();
  return course.library != -1;
}

bool isListed(Course& course) {
  return course.facts.listAnswer(course.library) == 1;
}

bool hasMode(Course& course) {
  return course.mode <= 2;
}

bool readsPreferences(Course& course) {
  course.preferences = course.facts.preferences();
  return course.preferences.has_value();
}

bool isDated(Course& course) {
  const Value* installed = entry(course.preferences, installedDateKey);
  const Instant* date = installed == nullptr ? nullptr : installed->date();
  if (date != nullptr) course.installed = *date;
  return date != nullptr;
}

/// The instant at which the period ends is already outside it.
bool isWithinPeriod(Course& course) {
  return course.facts.now() < course.installed + periods[course.kind];
}

bool isAgreed(Course& course) {
  const Value* agreement = entry(course.preferences, agreementKey);
  return agreement != nullptr && agreement->truth().value_or(false);
}

struct Stage {
  Gate gate;
  Question belongs;  // whether it is part of a decision on such a record at all
  Question needed;
  Passage passes;
};

constexpr Stage stages[] = {
    {Gate::osVersion, always, always, knowsOS},
    {Gate::libraryVersion, always, whereListed, knowsLibrary},
    {Gate::supportVersionList, always, whereListed, isListed},
    {Gate::mode, forApplications, always, hasMode},
    {Gate::preferences, always, butInModeTwo, readsPreferences},
    {Gate::installationDate, always, butInModeTwo, isDated},
    {Gate::period, always, butInModeTwo, isWithinPeriod},
    // Mode 0 judges the agreement by a second reading of the file, on purpose.
    {Gate::preferences, inModeZero, always, readsPreferences},
    {Gate::agreement, forApplications, butInModeTwo, isAgreed},
};

/// Whether the gates first appear in the order of the enumeration, and none is missing.
consteval bool inOrder() {
  std::size_t known = 1;  // how many gates have appeared, `none` included
  for (const Stage& stage : stages) {
    const auto place = static_cast<std::size_t>(stage.gate);
    if (place > known) return false;
    known = std::max(known, place + 1);
  }
  return known == enumerators<Gate>.size();
}
static_assert(inOrder());

StepState take(const Stage& stage, Course& course) {
  if (!stage.needed(course)) return StepState::notNeeded;
  return stage.passes(course) ? StepState::passed : StepState::refused;
}

}  // namespace

Gate refusal(SupportFacts& facts, RecordKind kind, std::uint32_t option,
             std::vector<DecisionStep>* steps) {
  Course course{facts, kind, optionMode(option)};
  Gate refusedBy = Gate::none;
  std::size_t reading = 0;
  for (const Stage& stage : stages) {
    if (!stage.belongs(course)) continue;
    StepState state = StepState::notReached;
    if (refusedBy == Gate::none) state = take(stage, course);
    if (state == StepState::refused) refusedBy = stage.gate;
    if (stage.gate == Gate::preferences) ++reading;
    if (steps != nullptr) steps->push_back({stage.gate, state, reading});
  }
  return refusedBy;
}

}  // namespace wenlolib
