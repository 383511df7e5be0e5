/// What a report lets a reader see of a document.
#ifndef WENLOLIB_READING_READABLE_H
#define WENLOLIB_READING_READABLE_H

#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib {

/// The document, or what was found of it; null if there is neither.
[[nodiscard]] inline const receiver::Document* readable(const receiver::Report& report) {
  if (report.document) return &*report.document;
  return report.found ? &*report.found : nullptr;
}

/// Whether the checksum, or that before a repair, vouches for what the document says.
[[nodiscard]] inline bool isTrusted(const receiver::Report& report) {
  return report.document && report.verdict.fault != receiver::Fault::altered;
}

/// What readers of a document that is not trusted are told.
inline constexpr std::string_view untrustedText =
    "Nothing vouches for these values: they are only what was found in the file.";

}  // namespace wenlolib

#endif
