/// Numbers of property lists, as text and as values.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTNUMBERS_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTNUMBERS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// A signed integer where it fits one, else an unsigned one: property lists do not tell the two
/// apart, and readers mostly ask for the signed.
[[nodiscard]] Value naturalValue(std::uint64_t number);

/// An optional sign and decimal digits, or hexadecimal ones after "0x", such as "-12" or "0xFF".
/// Nothing where the text is anything else or the number needs more than 64 bits.
[[nodiscard]] std::optional<Value> integerFromText(std::string_view text);

/// A decimal number such as "-1.5e3", or "nan", "inf" or "infinity" in any case with an optional
/// sign. Nothing where the text is anything else or the number is beyond a double.
[[nodiscard]] std::optional<double> realFromText(std::string_view text);

/// The shortest text that reads back as the same number; "nan", "infinity", "-infinity".
[[nodiscard]] std::string realText(double number);

}  // namespace wenlolib::platform::gnulinux

#endif
