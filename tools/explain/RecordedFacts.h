/// The facts of a support decision, noted while it is made.
#ifndef WENLOLIB_TOOLS_EXPLAIN_RECORDEDFACTS_H
#define WENLOLIB_TOOLS_EXPLAIN_RECORDEDFACTS_H

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/PropertyLists.h"
#include "policy/RecordingGates.h"
#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::tools {

/// A version as the decision received it, and the text that it was read from.
struct FoundVersion {
  std::int32_t number = -1;
  Text text;
  bool installed = false;  // of the library at its fixed path, not of the running one
};

/// A lookup in the support version list.
struct ListLookup {
  std::int32_t answer = -1;
  Text key;
  bool readable = false;       // the list could be read
  std::string trouble;         // why it could not be read
  std::string remedy;          // what to do about that; "" if the file has no place
  std::optional<Value> entry;  // under the key
};

/// One reading of the preference file.
struct PreferenceReading {
  Text path;
  std::optional<Dictionary> preferences;
  std::string trouble;  // what is wrong with the file; "" if nothing is
  std::string remedy;   // of a file without a dictionary; "" if the file has no place
};

/// What was asked, with the answers; what was not asked is absent.
struct FactNotes {
  std::optional<std::int32_t> upperBound;
  std::optional<FoundVersion> os;
  std::optional<FoundVersion> library;
  std::optional<ListLookup> list;
  std::vector<PreferenceReading> readings;
  std::optional<Instant> now;
};

/// Passes every question on and notes the answer. It also asks the platform in use what the answer
/// was read from, and notes that for a person.
class RecordedFacts : public SupportFacts {
 public:
  /// What the platform read, by path.
  using Lists = std::map<std::string, platform::ListReading>;

  /// `facts` and `lists` must outlive this object. `lists` grows as the facts are asked.
  RecordedFacts(SupportFacts& facts, const Lists& lists) : facts_(facts), lists_(lists) {}

  std::int32_t upperOSVersion() override;
  std::int32_t osVersion() override;
  std::int32_t runningLibraryVersion() override;
  std::int32_t installedLibraryVersion() override;
  std::int32_t listAnswer(std::int32_t libraryVersion) override;
  std::optional<Dictionary> preferences() override;
  Instant now() override;

  [[nodiscard]] const FactNotes& notes() const { return notes_; }

 private:
  /// The reading of the file at `path`; null if it was not read.
  [[nodiscard]] const platform::ListReading* readingOf(const Text& path) const;

  SupportFacts& facts_;
  const Lists& lists_;
  FactNotes notes_;
};

}  // namespace wenlolib::tools

#endif
