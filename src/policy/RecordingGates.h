/// Whether a record may be written at all.
#ifndef WENLOLIB_POLICY_RECORDINGGATES_H
#define WENLOLIB_POLICY_RECORDINGGATES_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/EnumTable.h"
#include "wenlolib/Instant.h"
#include "wenlolib/Value.h"

namespace wenlolib {

/// The facts that a decision depends on, one question each. A decision asks only what it needs,
/// when it needs it. Code that explains a decision wraps these and notes what was asked.
class SupportFacts {
 public:
  virtual ~SupportFacts() = default;

  /// From this OS version on, the library must be listed as supported.
  virtual std::int32_t upperOSVersion() = 0;
  /// The version of the running OS, or -1.
  virtual std::int32_t osVersion() = 0;
  /// The version that the running library states for itself, or -1.
  virtual std::int32_t runningLibraryVersion() = 0;
  /// The version of the library that is installed at its fixed path, or -1.
  virtual std::int32_t installedLibraryVersion() = 0;
  /// What the support version list says of a library version on the running OS: 1 for supported.
  virtual std::int32_t listAnswer(std::int32_t libraryVersion) = 0;
  /// The host's preferences, read again at every call.
  virtual std::optional<Dictionary> preferences() = 0;
  virtual Instant now() = 0;
};

/// The facts of the platform in use.
class PlatformFacts : public SupportFacts {
 public:
  std::int32_t upperOSVersion() override;
  std::int32_t osVersion() override;
  std::int32_t runningLibraryVersion() override;
  std::int32_t installedLibraryVersion() override;
  std::int32_t listAnswer(std::int32_t libraryVersion) override;
  std::optional<Dictionary> preferences() override;
  Instant now() override;
};

enum class RecordKind : std::uint8_t { application, printerLog };

/// The gates that a record passes, in order; `none` means that no gate refuses it.
enum class Gate : std::uint8_t {
  none,
  osVersion,
  libraryVersion,
  supportVersionList,
  mode,
  preferences,
  installationDate,
  period,
  agreement,
};

struct GateNames {
  std::string_view code;
  std::string_view title;   // for a person
  std::string_view reason;  // the code of the outcome in which this gate refuses
};

/// Programs rely on the codes, so the codes must not change.
inline constexpr EnumTable<Gate, GateNames> gateNames({
    {Gate::none, {"none", "None", "allowed"}},
    {Gate::osVersion, {"os_version", "OS version", "os_version_unknown"}},
    {Gate::libraryVersion, {"library_version", "Library version", "library_version_unknown"}},
    {Gate::supportVersionList, {"support_list", "Support version list", "not_in_support_list"}},
    {Gate::mode, {"mode", "Mode", "mode_refused"}},
    {Gate::preferences, {"preferences", "Preference file", "no_preferences"}},
    {Gate::installationDate, {"installation_date", "Installation date", "no_installation_date"}},
    {Gate::period, {"period", "Period", "period_over"}},
    {Gate::agreement, {"agreement", "Agreement", "no_agreement"}},
});

/// How long after the installation recording is allowed. The periods differ on purpose.
inline constexpr EnumTable<RecordKind, std::chrono::days> periods({
    {RecordKind::application, std::chrono::days(1440)},
    {RecordKind::printerLog, std::chrono::days(3614)},
});

/// Whether the support version list applies: from the upper bound on.
[[nodiscard]] constexpr bool listCounts(std::int32_t osVersion, std::int32_t upperBound) {
  return osVersion >= upperBound;
}

enum class StepState : std::uint8_t {
  passed,
  refused,
  notNeeded,   // the decision did not need it
  notReached,  // an earlier step has refused
};

/// One gate, and how a decision dealt with it.
struct DecisionStep {
  Gate gate = Gate::none;
  StepState state = StepState::notReached;
  std::size_t reading = 0;  // which reading of the preference file it uses; 0 before the first

  [[nodiscard]] bool taken() const {
    return state == StepState::passed || state == StepState::refused;
  }
};

/// The gate that refuses a record; `none` if it is allowed. The option word counts only for
/// application usage. If `steps` is not null, all steps are added to it, in the order in which they
/// are taken.
[[nodiscard]] Gate refusal(SupportFacts& facts, RecordKind kind, std::uint32_t option,
                           std::vector<DecisionStep>* steps = nullptr);

}  // namespace wenlolib

#endif
