#include "explain/RecordedFacts.h"

#include "library/Wording.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

Text installedVersionText() {
  const auto information =
      platform::current().bundles->informationAt(std::string(installedBundlePath));
  return textEntry(information, bundleVersionKey);
}

ListLookup lookup(std::int32_t libraryVersion, std::int32_t answer) {
  ListLookup lookup;
  lookup.answer = answer;
  lookup.key = CommonTooWenlolib::convertVersionNumToBiasStr(libraryVersion);
  const Text path = configurationPath(supportVersionListFile);
  std::optional<Dictionary> list;
  if (path) list = platform::current().propertyLists->read(*path).dictionary;
  lookup.readable = list.has_value();
  const Value* value = lookup.key ? entry(list, *lookup.key) : nullptr;
  if (value != nullptr) lookup.entry = *value;
  return lookup;
}

}  // namespace

std::int32_t RecordedFacts::upperOSVersion() {
  notes_.upperBound = facts_.upperOSVersion();
  return *notes_.upperBound;
}

std::int32_t RecordedFacts::osVersion() {
  const std::int32_t number = facts_.osVersion();
  notes_.os = FoundVersion{number, CommonTooWenlolib::osVersion()};
  return number;
}

std::int32_t RecordedFacts::runningLibraryVersion() {
  const std::int32_t number = facts_.runningLibraryVersion();
  const auto information = platform::current().bundles->ownInformation();
  notes_.library = FoundVersion{number, textEntry(information, shortVersionKey)};
  return number;
}

std::int32_t RecordedFacts::installedLibraryVersion() {
  const std::int32_t number = facts_.installedLibraryVersion();
  notes_.library = FoundVersion{number, installedVersionText(), true};
  return number;
}

std::int32_t RecordedFacts::listAnswer(std::int32_t libraryVersion) {
  const std::int32_t answer = facts_.listAnswer(libraryVersion);
  notes_.list = lookup(libraryVersion, answer);
  if (const auto* reading = readingOf(configurationPath(supportVersionListFile))) {
    notes_.list->trouble = listTrouble(*reading);
    notes_.list->remedy = supportListRemedy(*reading);
  }
  return answer;
}

std::optional<Dictionary> RecordedFacts::preferences() {
  PreferenceReading reading;
  reading.preferences = facts_.preferences();
  reading.path = configurationPath(preferenceFile);
  // The library does not open a file that it cannot see. To open it tells why it cannot.
  if (reading.path && !reading.preferences) {
    static_cast<void>(platform::current().propertyLists->read(*reading.path));
  }
  if (const auto* file = readingOf(reading.path)) {
    reading.trouble = listTrouble(*file);
    reading.remedy = preferencesRemedy(*file);
  }
  notes_.readings.push_back(reading);
  return reading.preferences;
}

const platform::ListReading* RecordedFacts::readingOf(const Text& path) const {
  const auto found = path ? lists_.find(*path) : lists_.end();
  return found == lists_.end() ? nullptr : &found->second;
}

Instant RecordedFacts::now() {
  notes_.now = facts_.now();
  return *notes_.now;
}

}  // namespace wenlolib::tools
