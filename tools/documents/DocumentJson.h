/// Documents as JSON, for programs.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTJSON_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTJSON_H

#include <optional>
#include <string>
#include <string_view>

#include "documents/Comparison.h"
#include "documents/Redaction.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

// Each is one object on a line of its own. A text that is not UTF-8 is null; its bytes are written
// as hexadecimal digits under the same name with "_hex" added.

/// path, bytes, sound, fault, layer, offset, field, explanation.
[[nodiscard]] std::string verdictJson(std::string_view path, std::size_t bytes,
                                      const receiver::Verdict& verdict);

/// The same, and redacted, trusted, layout, fields, cipher, contents and contents_bytes; null where
/// unknown.
[[nodiscard]] std::string documentJson(std::string_view path, std::size_t bytes,
                                       const receiver::Report& report,
                                       const std::optional<std::string>& contents,
                                       const Redaction& redaction);

/// a, b, same, a_trusted, b_trusted, differences, contents.
[[nodiscard]] std::string comparisonJson(std::string_view a, std::string_view b,
                                         const Comparison& comparison);

}  // namespace wenlolib::tools

#endif
