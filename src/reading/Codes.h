/// Names of layouts, layers and faults, for programs. They never change.
#ifndef WENLOLIB_READING_CODES_H
#define WENLOLIB_READING_CODES_H

#include <optional>
#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib {

// All end in NUL.
[[nodiscard]] std::string_view code(receiver::Layout layout);
[[nodiscard]] std::string_view code(receiver::Layer layer);
[[nodiscard]] std::string_view code(receiver::Fault fault);

/// "RC4" or "XOR"; nothing if no payload was found.
[[nodiscard]] std::optional<std::string_view> cipherName(char marker);

}  // namespace wenlolib

#endif
