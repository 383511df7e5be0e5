/// Handing records to the library, and watching what it does with them.
#ifndef WENLOLIB_TOOLS_LIBRARY_RECORDING_H
#define WENLOLIB_TOOLS_LIBRARY_RECORDING_H

#include <cstdint>
#include <optional>
#include <string>

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
};

/// A file that the library wrote, or would have written.
struct WrittenDocument {
  std::string path;
  std::size_t size = 0;
  platform::Outcome outcome = platform::Outcome::failed;
};

struct RecordOutcome {
  bool answer = false;                      // the library's own
  std::optional<WrittenDocument> document;  // absent if nothing was to be written
  std::optional<Unanswered> unanswered;     // why not, if the platform was at fault
};

/// Records through the library's entry points, on `base`.
[[nodiscard]] RecordOutcome record(const platform::Platform& base, const RecordRequest& request);

struct PreviewedDocument {
  std::string path;
  std::string bytes;
  bool exampleIdentifier = false;  // none is stored yet, and the one in the bytes is made up
};

struct Preview {
  std::optional<PreviewedDocument> document;  // absent if there is none
  std::optional<Unanswered> unanswered;       // why, if the platform was at fault
};

/// What a record would write if it is allowed: the exact bytes and their path. The library does all
/// of its work on `base`, except that nothing is written.
[[nodiscard]] Preview preview(const platform::Platform& base, const RecordRequest& request);

/// Stands for the identifier that a first record would make.
inline constexpr char exampleUuid[] = "00000000-0000-4000-8000-000000000000";

}  // namespace wenlolib::tools

#endif
