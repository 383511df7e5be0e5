/// Text between the core's UTF-8 and the characters that Foundation hands out.
#ifndef WENLOLIB_OBJC_UNICODE_H
#define WENLOLIB_OBJC_UNICODE_H

#include <cstdint>
#include <span>
#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib::objc {

/// Null where half a surrogate pair stands alone.
[[nodiscard]] Text utf8From(std::span<const std::uint16_t> units);

/// Writes `text`, which must be well-formed UTF-8, in UTF-16: at most one unit for each of its
/// bytes. The number of units written.
std::size_t utf16From(std::string_view text, std::uint16_t* units);

}  // namespace wenlolib::objc

#endif
