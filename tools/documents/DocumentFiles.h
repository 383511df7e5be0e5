/// The files of documents: finding, counting and reading them.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTFILES_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTFILES_H

#include <dirent.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace wenlolib::tools {

/// Whether a file is named like a document. Unfinished documents are called .wenlolib-*.tmp, so
/// they do not have such a name.
[[nodiscard]] bool hasDocumentName(std::string_view name);

/// A file to examine, or why it cannot be examined.
struct Candidate {
  std::string path;
  std::string complaint;  // why it cannot be examined; else ""
  bool named = true;      // on the command line; else it was found in a folder
  bool regular = false;   // its folder says that it is a regular file
};

/// Goes through files and folders in the order given, and through each folder and its sub-folders
/// in the order in which they list their entries, without keeping a list. In folders only *.PLM and
/// *.ALM count; unfinished files are skipped, and links to folders are not followed.
class DocumentWalk {
 public:
  explicit DocumentWalk(std::vector<std::string> paths) : named_(std::move(paths)) {}

  /// The next one; nothing at the end.
  [[nodiscard]] std::optional<Candidate> next();

 private:
  struct CloseFolder {
    void operator()(DIR* stream) const { closedir(stream); }
  };
  struct Folder {
    std::string path;  // ends in "/"
    std::unique_ptr<DIR, CloseFolder> stream;
  };

  [[nodiscard]] std::optional<Candidate> nextNamed();
  [[nodiscard]] std::optional<Candidate> nextInFolder();
  [[nodiscard]] std::optional<Candidate> consider(const dirent& entry);
  [[nodiscard]] std::optional<Candidate> enter(std::string path, bool named);

  std::vector<std::string> named_;
  std::size_t position_ = 0;
  std::vector<Folder> open_;  // from the outermost one to the one that is being read
};

/// A document that was read.
struct DocumentReading {
  std::string_view bytes;  // within the buffer
  std::string complaint;   // why it could not be read; else ""
  bool vanished = false;   // it was removed between finding and reading, which is not an error
};

/// The largest file that is read. Documents have a little more than 4 GiB at most.
inline constexpr std::size_t largestDocument = std::size_t{8} << 30;

/// Reads a whole regular file into a buffer that can be used again for the next one. Follows links,
/// does not wait for pipes.
[[nodiscard]] DocumentReading readDocument(const Candidate& candidate, std::string& buffer);

/// Walks through files and folders on a thread of its own, ahead of the walk that reads, and
/// counts. Files that come or go in the meantime make the number an estimate.
class DocumentCount {
 public:
  /// Throws std::system_error if no thread can be started.
  explicit DocumentCount(std::vector<std::string> paths);
  ~DocumentCount();
  DocumentCount(const DocumentCount&) = delete;
  DocumentCount& operator=(const DocumentCount&) = delete;

  /// Nothing while it is still counting.
  [[nodiscard]] std::optional<std::uint64_t> total() const;

 private:
  void count(std::vector<std::string> paths);

  std::atomic<bool> stopped_ = false;
  std::atomic<bool> done_ = false;
  std::uint64_t documents_ = 0;  // the thread's own until it is done
  std::thread thread_;
};

}  // namespace wenlolib::tools

#endif
