/// Whether bytes are text.
#ifndef WENLOLIB_BASE_UTF8_H
#define WENLOLIB_BASE_UTF8_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// True when `bytes` is well-formed UTF-8 as RFC 3629 defines it: no overlong form, no surrogate,
/// nothing above U+10FFFF. The empty text is well formed.
[[nodiscard]] bool isUtf8(std::string_view bytes) noexcept;

/// The text itself where it is UTF-8, else null.
[[nodiscard]] Text utf8OrNull(Text text) noexcept;

}  // namespace wenlolib

#endif
