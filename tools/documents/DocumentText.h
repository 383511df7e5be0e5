/// Documents and verdicts for a person to read.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTTEXT_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTTEXT_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "reading/Redaction.h"
#include "terminal/Output.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

/// A verdict in one word, for a person.
enum class Condition : std::uint8_t {
  sound,
  truncated,
  damaged,
  altered,
  repaired,
  illegible,  // whole, but its contents cannot be decrypted
  foreign,
};

[[nodiscard]] Condition conditionOf(const receiver::Verdict& verdict);

/// Whether the exit status is that of a sound document.
[[nodiscard]] constexpr bool canBeReliedOn(Condition condition) {
  return condition == Condition::sound || condition == Condition::repaired;
}

/// "sound", "truncated" and so on.
[[nodiscard]] std::string_view wordFor(Condition condition);

[[nodiscard]] Colour colourOf(Condition condition);

/// "application usage", "printer log, older tag type".
[[nodiscard]] std::string_view description(receiver::Layout layout);

/// Where it broke and what, such as "at byte 120, Encrypted: The payload ..."; for a verdict that
/// is not sound.
[[nodiscard]] std::string description(const receiver::Verdict& verdict);

/// Word and description, such as "damaged: at byte 0: ..."; for a verdict that is not sound.
[[nodiscard]] std::string verdictText(const receiver::Verdict& verdict);

/// The verdict on a document: a line, broken if `style` has columns.
[[nodiscard]] std::string verdictLine(std::string_view path, const receiver::Verdict& verdict,
                                      const Style& style);

/// The path, the verdict, every field that could be read, and all of the contents, with "|" before
/// each line. Says so if nothing vouches for them.
[[nodiscard]] std::string documentText(std::string_view path, std::size_t bytes,
                                       const receiver::Report& report,
                                       const std::optional<std::string>& contents,
                                       const Redaction& redaction, const Style& style);

/// One line for each element, folded to stay within `width`; each line begins with two blanks, and
/// breaks are not marked. Of an element with more than 2 KiB, it shows the beginning and how much
/// was left out.
[[nodiscard]] std::string foldDocument(std::string_view document, std::size_t width);

}  // namespace wenlolib::tools

#endif
