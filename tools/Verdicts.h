/// What a verdict is called.
#ifndef WENLOLIB_TOOLS_VERDICTS_H
#define WENLOLIB_TOOLS_VERDICTS_H

#include <cstdint>
#include <string>
#include <string_view>

#include "Terminal.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

// Codes for programs; they stay as they are.
[[nodiscard]] std::string_view code(receiver::Layout layout);
[[nodiscard]] std::string_view code(receiver::Layer layer);
[[nodiscard]] std::string_view code(receiver::Fault fault);

/// What a verdict comes to, for a person.
enum class Condition : std::uint8_t {
  sound,
  truncated,
  damaged,
  altered,
  repaired,
  illegible,  // nothing has happened to it, but its contents cannot be decrypted
};

[[nodiscard]] Condition conditionOf(const receiver::Verdict& verdict);

/// "sound", "truncated" and so on.
[[nodiscard]] std::string_view word(Condition condition);

[[nodiscard]] Colour colourOf(Condition condition);

/// "application usage", "printer log, older tag type".
[[nodiscard]] std::string_view description(receiver::Layout layout);

/// What broke and where, such as "bad hexadecimal at byte 120, Encrypted: ..."; for a verdict that
/// is not sound.
[[nodiscard]] std::string description(const receiver::Verdict& verdict);

/// "RC4" or "XOR".
[[nodiscard]] std::string_view cipherName(char marker);

}  // namespace wenlolib::tools

#endif
