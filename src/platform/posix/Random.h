/// Randomness from the system, without touching any generator of the host.
#ifndef WENLOLIB_PLATFORM_POSIX_RANDOM_H
#define WENLOLIB_PLATFORM_POSIX_RANDOM_H

#include <array>
#include <cstdint>
#include <optional>

namespace wenlolib::platform::posix {

using RandomBytes = std::array<std::uint8_t, 16>;

/// 16 unguessable bytes; nothing if the system has none to give to this process. Throws
/// std::system_error if it cannot answer.
[[nodiscard]] std::optional<RandomBytes> randomBytes();

}  // namespace wenlolib::platform::posix

#endif
