#include "policy/SupportDecision.h"

#include "toolkit/Entries.h"
#include "toolkit/OptionMode.h"

namespace wenlolib {
namespace {

using VersionQuestion = std::int32_t (SupportFacts::*)();

/// The OS version, and from the upper bound on the support version list for the library version
/// that `libraryVersion` asks for.
Gate systemRefusal(SupportFacts& facts, VersionQuestion libraryVersion) {
  const std::int32_t upperBound = facts.upperOSVersion();
  const std::int32_t running = facts.osVersion();
  if (running == -1) return Gate::osVersion;
  if (running < upperBound) return Gate::none;
  const std::int32_t version = (facts.*libraryVersion)();
  if (version == -1) return Gate::libraryVersion;
  return facts.listAnswer(version) == 1 ? Gate::none : Gate::supportVersionList;
}

/// Whether less than `period` has passed since the installation; the very instant at which it ends
/// is outside.
Gate periodRefusal(SupportFacts& facts, const std::optional<Dictionary>& preferences,
                   Seconds period) {
  if (!preferences) return Gate::preferences;
  const Value* installed = entry(preferences, "InstalledDate");
  if (installed == nullptr || installed->date() == nullptr) return Gate::installationDate;
  return facts.now() < *installed->date() + period ? Gate::none : Gate::period;
}

Gate agreementRefusal(const std::optional<Dictionary>& preferences) {
  if (!preferences) return Gate::preferences;
  const Value* agreement = entry(preferences, "LatestSelectedAgreement");
  const bool agreed = agreement != nullptr && agreement->truth().value_or(false);
  return agreed ? Gate::none : Gate::agreement;
}

}  // namespace

Gate applicationRefusal(SupportFacts& facts, std::uint32_t option) {
  const Gate system = systemRefusal(facts, &SupportFacts::runningLibraryVersion);
  if (system != Gate::none) return system;
  const std::uint32_t mode = optionMode(option);
  if (mode == 2) return Gate::none;
  if (mode > 2) return Gate::mode;
  const std::optional<Dictionary> preferences = facts.preferences();
  const Gate period = periodRefusal(facts, preferences, applicationPeriod);
  if (period != Gate::none) return period;
  // Mode 0 judges the agreement by a second reading of the file, on purpose.
  return agreementRefusal(mode == 0 ? facts.preferences() : preferences);
}

Gate printerLogRefusal(SupportFacts& facts) {
  const Gate system = systemRefusal(facts, &SupportFacts::installedLibraryVersion);
  if (system != Gate::none) return system;
  return periodRefusal(facts, facts.preferences(), printerLogPeriod);
}

}  // namespace wenlolib
