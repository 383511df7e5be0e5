/// The OS version as text, for the library's own use. Unlike the operation offered to hosts, it
/// lets a failed allocation through.
#ifndef WENLOLIB_TOOLKIT_SYSTEMINFORMATION_H
#define WENLOLIB_TOOLKIT_SYSTEMINFORMATION_H

#include "wenlolib/Text.h"

namespace wenlolib {

/// The OS version in full, such as "10.15.7"; null if a part of it is unknown.
[[nodiscard]] Text fullOSVersion();

}  // namespace wenlolib

#endif
