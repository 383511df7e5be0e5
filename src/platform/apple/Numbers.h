/// Numbers between Core Foundation and the library.
#ifndef WENLOLIB_PLATFORM_APPLE_NUMBERS_H
#define WENLOLIB_PLATFORM_APPLE_NUMBERS_H

#include <cstdint>
#include <optional>

#include "base/Value.h"
#include "platform/apple/Owned.h"

namespace wenlolib::platform::apple {

/// A real, a signed integer, or an unsigned one where it does not fit those. Nothing for an integer
/// beyond both.
[[nodiscard]] std::optional<Value> valueOf(CFNumberRef number);

[[nodiscard]] Owned<CFTypeRef> numberFrom(std::int64_t number);
[[nodiscard]] Owned<CFTypeRef> numberFrom(std::uint64_t number);
[[nodiscard]] Owned<CFTypeRef> numberFrom(double number);

}  // namespace wenlolib::platform::apple

#endif
