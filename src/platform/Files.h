/// Files and folders. A path that is not absolute is looked up as the process would. Nothing can be
/// at a path with a NUL in it.
#ifndef WENLOLIB_PLATFORM_FILES_H
#define WENLOLIB_PLATFORM_FILES_H

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Reason.h"

namespace wenlolib::platform {

/// What is at a path, links followed. A dangling link counts as nothing.
enum class Kind : std::uint8_t { nothing, folder, other };

/// How a finished file takes its name: by replacing whatever has it, or only if nothing has it.
enum class Publication : std::uint8_t { replacing, asNew };

/// How a write ended, and why it failed if it did.
struct Outcome {
  /// `taken`: another writer has taken the name since it was found free (`asNew` only).
  enum Kind : std::uint8_t { written, taken, failed };
  Kind kind;
  Reason reason;

  Outcome(Kind outcome, Reason why = {}) : kind(outcome), reason(why) {}
  friend bool operator==(const Outcome& outcome, Kind wanted) { return outcome.kind == wanted; }
};

class Files {
 public:
  virtual ~Files() = default;

  /// Throws if the platform cannot answer (for lack of memory, for example).
  virtual Kind kindAt(const std::string& path) = 0;

  /// Whether a program can be run from the file at `path`; false for a folder.
  virtual bool isExecutable(const std::string& path) = 0;

  /// Writes a whole file with the permissions `mode`, whatever the process's file-creation mask. A
  /// reader sees either what was there before or all of `bytes`, even after a power cut. Unless the
  /// outcome is `written`, what was there stays and nothing is left beside it. The folder must
  /// exist.
  virtual Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                  std::uint32_t mode, Publication publication) = 0;

  /// Sets the permissions of the regular file at `path`. False, and nothing is changed, for
  /// anything else, for a link, and for a file that has another name as well: opening it up could
  /// open up somebody else's file.
  virtual bool setPermissions(const std::string& path, std::uint32_t mode) = 0;

  /// Creates a folder and its missing parents, each with the permissions `mode`. If the folder
  /// exists afterwards, nothing has failed.
  virtual Reason createFolder(const std::string& path, std::uint32_t mode) = 0;
};

}  // namespace wenlolib::platform

#endif
