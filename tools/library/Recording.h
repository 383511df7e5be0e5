/// Handing records to the library, and watching what it does with them.
#ifndef WENLOLIB_TOOLS_LIBRARY_RECORDING_H
#define WENLOLIB_TOOLS_LIBRARY_RECORDING_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "library/ToolPlatform.h"
#include "platform/Platform.h"
#include "policy/RecordingGates.h"
#include "wenlolib/Value.h"

namespace wenlolib::tools {

/// What a host passes with a record.
struct RecordRequest {
  RecordKind kind = RecordKind::application;
  std::string name;
  std::uint32_t option = 0;
  Dictionary printer;  // of a printer log
  std::string contents;
  bool keep = false;  // rather refuse than replace an older record
};

/// A file that the library wrote, or would have written.
struct WrittenDocument {
  std::string path;
  std::size_t size = 0;
  platform::Outcome outcome = platform::Outcome::failed;
  bool replacing = false;  // an older record was at the path
  bool kept = false;       // so it stayed, and nothing was written
};

struct RecordOutcome {
  bool answer = false;                      // the library's own
  std::optional<WrittenDocument> document;  // absent if nothing was to be written
  std::optional<Unanswered> unanswered;     // why not, if the platform was at fault

  [[nodiscard]] bool written() const {
    return document && document->outcome == platform::Outcome::written;
  }
};

/// Records through the library's entry points, on `base`.
[[nodiscard]] RecordOutcome record(const platform::Platform& base, const RecordRequest& request);

struct PreviewedDocument {
  std::string path;
  std::string bytes;
  bool replacing = false;          // an older record is at the path
  bool exampleIdentifier = false;  // none is stored yet, and the one in the bytes is made up
};

struct Preview {
  std::optional<PreviewedDocument> document;  // absent if there is none
  std::optional<Unanswered> unanswered;       // why, if the platform was at fault
};

/// What a record would write if it is allowed: the exact bytes and their path. The library does all
/// of its work on `base`, except that nothing is written.
[[nodiscard]] Preview preview(const platform::Platform& base, const RecordRequest& request);

/// What a record of this kind replaces, if it replaces any, for a person.
[[nodiscard]] constexpr std::string_view replacedText(RecordKind kind) {
  return kind == RecordKind::application ? "the older record of this month"
                                         : "the older log, because all 999 numbers are taken";
}

/// Stands for the identifier that a first record would make.
inline constexpr char exampleUuid[] = "00000000-0000-4000-8000-000000000000";

}  // namespace wenlolib::tools

#endif
