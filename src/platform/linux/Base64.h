/// Base64 (RFC 4648, the standard alphabet).
#ifndef WENLOLIB_PLATFORM_LINUX_BASE64_H
#define WENLOLIB_PLATFORM_LINUX_BASE64_H

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// Appends the characters for `bytes`, padded with "=" to a multiple of four.
void appendBase64(std::string& text, std::span<const std::uint8_t> bytes);

/// The bytes that `text` spells, blanks anywhere left aside. Nothing where it holds any other
/// character, or is not padded to a multiple of four.
[[nodiscard]] std::optional<Value::Data> dataFromBase64(std::string_view text);

}  // namespace wenlolib::platform::gnulinux

#endif
