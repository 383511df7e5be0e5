/// Strings and bytes between Core Foundation and the library.
#ifndef WENLOLIB_PLATFORM_APPLE_STRINGS_H
#define WENLOLIB_PLATFORM_APPLE_STRINGS_H

#include "platform/Crypto.h"
#include "platform/apple/Owned.h"
#include "wenlolib/Text.h"

namespace wenlolib::platform::apple {

/// Null for the null string, and for one that no UTF-8 can carry (half of a surrogate pair).
[[nodiscard]] Text textOf(CFStringRef string);

/// A copy of the bytes as a data object; null where memory is short.
[[nodiscard]] Owned<CFDataRef> dataFrom(Bytes bytes) noexcept;

/// The bytes of a data object, good for as long as the object.
[[nodiscard]] Bytes bytesOf(CFDataRef data) noexcept;

}  // namespace wenlolib::platform::apple

#endif
