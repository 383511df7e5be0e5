/// Documents and verdicts for a person to read.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTTEXT_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTTEXT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "documents/Redaction.h"
#include "terminal/Output.h"
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
[[nodiscard]] std::string_view wordFor(Condition condition);

[[nodiscard]] Colour colourOf(Condition condition);

/// "application usage", "printer log, older tag type".
[[nodiscard]] std::string_view description(receiver::Layout layout);

/// What broke and where, such as "bad hexadecimal at byte 120, Encrypted: ..."; for a verdict that
/// is not sound.
[[nodiscard]] std::string description(const receiver::Verdict& verdict);

/// Word and description, such as "damaged: not XML at byte 0"; for a verdict that is not sound.
[[nodiscard]] std::string verdictText(const receiver::Verdict& verdict);

/// "RC4" or "XOR".
[[nodiscard]] std::string_view cipherName(char marker);

/// How it is shown. `columns` is 0 where lines are not to be broken.
struct Style {
  Paint paint;
  std::size_t columns;
};

/// The verdict on a document: a line, broken where `style` has columns.
[[nodiscard]] std::string verdictLine(std::string_view path, const receiver::Verdict& verdict,
                                      const Style& style);

/// The path, the verdict, every field that could be read, and the contents behind "|", whole.
[[nodiscard]] std::string documentText(std::string_view path, std::size_t bytes,
                                       const receiver::Report& report,
                                       const std::optional<std::string>& contents,
                                       const Redaction& redaction, const Style& style);

/// A line for every element, longer ones folded to stay within `width`; each begins with two
/// blanks. No character stands at the breaks. Of an element with more than 2 KiB the beginning is
/// shown, and how much was left out.
[[nodiscard]] std::string foldDocument(std::string_view document, std::size_t width);

}  // namespace wenlolib::tools

#endif
