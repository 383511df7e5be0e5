/// Documents as JSON, for programs.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTJSON_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTJSON_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "documents/Comparison.h"
#include "reading/Redaction.h"
#include "terminal/Json.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

/// path, bytes, sound, fault, layer, offset, field, explanation.
void putVerdict(Json& object, std::string_view path, std::uint64_t bytes,
                const receiver::Verdict& verdict);

/// An object with these members.
[[nodiscard]] std::string verdictJson(std::string_view path, std::size_t bytes,
                                      const receiver::Verdict& verdict);

/// The same for a file or folder that could not be read: its fault is "unreadable".
[[nodiscard]] std::string unreadableJson(std::string_view path, std::string_view why);

/// A verdict's members, and redacted, trusted, layout, fields, cipher, contents and contents_bytes;
/// null where unknown.
[[nodiscard]] std::string documentJson(std::string_view path, std::size_t bytes,
                                       const receiver::Report& report,
                                       const std::optional<std::string>& contents,
                                       const Redaction& redaction);

/// a, b, same, a_trusted, b_trusted, differences, contents.
[[nodiscard]] std::string comparisonJson(std::string_view a, std::string_view b, const Side& aSide,
                                         const Side& bSide, const Comparison& comparison);

}  // namespace wenlolib::tools

#endif
