/// Documents in archives: tar, as it is or compressed with gzip or zstd. Read as a stream, one
/// member after the other; nothing is unpacked to disk.
#ifndef WENLOLIB_READING_ARCHIVE_H
#define WENLOLIB_READING_ARCHIVE_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading/DocumentFiles.h"
#include "reading/InputFile.h"

namespace wenlolib {

/// A member with more bytes is not read: it would have to be held in memory whole.
inline constexpr std::size_t largestMember = std::size_t{64} << 20;

/// Whether a file begins as an archive does. 512 bytes are enough to tell.
[[nodiscard]] bool looksLikeArchive(std::string_view beginning);

/// Walks through files and folders like `DocumentWalk`. With `archives` also through the archives
/// among them: *.tar, *.tar.gz, *.tgz, *.tar.zst, and any named file that begins like one, unless
/// it has a document's name. A member carries its bytes, and so does a pipe that was read to tell.
class ArchiveWalk {
 public:
  ArchiveWalk(std::vector<std::string> paths, bool archives, Skip skip, Stop stop);
  ~ArchiveWalk();
  ArchiveWalk(const ArchiveWalk&) = delete;
  ArchiveWalk& operator=(const ArchiveWalk&) = delete;

  /// The next one; nothing at the end.
  [[nodiscard]] std::optional<Candidate> next();

  /// What was passed over until now.
  [[nodiscard]] PassedOver passedOver() const;

 private:
  class Members;

  [[nodiscard]] std::optional<Candidate> opened(Candidate candidate);

  DocumentWalk walk_;
  bool archives_;
  Skip skip_;
  Stop stop_;
  PassedOver passed_;
  std::unique_ptr<Members> members_;  // of the archive that is being read
};

}  // namespace wenlolib

#endif
