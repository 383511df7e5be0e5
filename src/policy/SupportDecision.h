/// Whether a record may be written at all.
#ifndef WENLOLIB_POLICY_SUPPORTDECISION_H
#define WENLOLIB_POLICY_SUPPORTDECISION_H

#include <cstdint>

#include "policy/SupportFacts.h"

namespace wenlolib {

/// The gates that a record passes, in order; `none` refused it when it is allowed.
enum class Gate : std::uint8_t {
  none,
  osVersion,           // the OS version is unknown
  libraryVersion,      // the library's own version is unknown
  supportVersionList,  // the list does not name the library version for this OS
  mode,                // no mode of the option word that is ever allowed
  preferences,         // no preference file that can be read
  installationDate,    // the preferences hold no installation date
  period,              // the installation is too long ago
  agreement,           // the user has not agreed
};

/// How long after the installation recording is allowed. The periods differ on purpose.
inline constexpr Seconds applicationPeriod{124416000.0};  // 1440 days
inline constexpr Seconds printerLogPeriod{312249600.0};   // 3614 days

/// The gate at which an application usage record with this option word is refused.
[[nodiscard]] Gate applicationRefusal(SupportFacts& facts, std::uint32_t option);

/// The gate at which a printer log record is refused. Neither option nor agreement counts.
[[nodiscard]] Gate printerLogRefusal(SupportFacts& facts);

}  // namespace wenlolib

#endif
