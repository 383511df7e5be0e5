/// What the support decision asks.
#ifndef WENLOLIB_POLICY_SUPPORTFACTS_H
#define WENLOLIB_POLICY_SUPPORTFACTS_H

#include <cstdint>
#include <optional>

#include "wenlolib/Instant.h"
#include "wenlolib/Value.h"

namespace wenlolib {

/// The facts behind a decision, one question each. A decision asks only what it needs, when it
/// needs it: whoever explains one wraps these and notes what was asked.
class SupportFacts {
 public:
  virtual ~SupportFacts() = default;

  /// The OS version from which on the library must be listed as supported.
  virtual std::int32_t upperOSVersion() = 0;
  /// The version of the running OS, or -1.
  virtual std::int32_t osVersion() = 0;
  /// The version that the running library gives itself, or -1.
  virtual std::int32_t runningLibraryVersion() = 0;
  /// The version of the library that is installed at its fixed path, or -1.
  virtual std::int32_t installedLibraryVersion() = 0;
  /// What the support version list says of a library version on the running OS: 1 for supported.
  virtual std::int32_t listAnswer(std::int32_t libraryVersion) = 0;
  /// The host's preferences, read anew at every call.
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

}  // namespace wenlolib

#endif
