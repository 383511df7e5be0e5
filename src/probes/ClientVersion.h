/// The version texts of the client and the OS, as a survey document carries them.
#ifndef WENLOLIB_PROBES_CLIENTVERSION_H
#define WENLOLIB_PROBES_CLIENTVERSION_H

#include <string>
#include <string_view>

namespace wenlolib {

/// The first two components of a version: "1.2.3" gives "1.2". A version without a point, or with
/// nothing after its first one, gives "".
[[nodiscard]] std::string twoComponents(std::string_view version);

/// The host application's version. The installed library's stands in only where there is no host
/// bundle at all: a host bundle without a version gives "", on purpose.
[[nodiscard]] std::string clientVersion();

/// The version of the bundle that this library was loaded from.
[[nodiscard]] std::string libraryVersion();

/// "M." and the OS version, or "".
[[nodiscard]] std::string markedOSVersion();

}  // namespace wenlolib

#endif
