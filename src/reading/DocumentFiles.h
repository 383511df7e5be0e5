/// The files of documents: finding and reading them.
#ifndef WENLOLIB_READING_DOCUMENTFILES_H
#define WENLOLIB_READING_DOCUMENTFILES_H

#include <dirent.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading/InputFile.h"

namespace wenlolib {

/// Whether a file is named like a document. Unfinished documents are called .wenlolib-*.tmp, so
/// they do not have such a name.
[[nodiscard]] bool hasDocumentName(std::string_view name);

/// The name that a host gave, from where the file is, such as "PLM/QX200_1.PLM".
[[nodiscard]] std::string hostName(std::string_view place);

/// Files in folders that are not examined, by reason.
struct PassedOver {
  std::uint64_t otherEnding = 0;
  std::uint64_t links = 0;  // to folders
  std::uint64_t unfinished = 0;

  friend PassedOver operator+(const PassedOver& a, const PassedOver& b) {
    return {a.otherEnding + b.otherEnding, a.links + b.links, a.unfinished + b.unfinished};
  }
  friend PassedOver operator-(const PassedOver& a, const PassedOver& b) {
    return {a.otherEnding - b.otherEnding, a.links - b.links, a.unfinished - b.unfinished};
  }
};

/// A file to examine, or why it cannot be examined.
struct Candidate {
  std::string path;       // "-", if named, is standard input
  std::string complaint;  // why it cannot be examined; else ""
  bool named = true;      // by the caller; else it was found in a folder
  bool regular = false;   // its folder says that it is a regular file
  bool nothing = false;   // it is a folder or archive without documents, as the complaint says
  PassedOver passed{};    // what else is in such a folder
  bool forGood = false;   // the complaint holds for as long as the file stays as it is
  std::optional<std::string> member{};  // its name in the archive at `path`
  std::optional<std::string> bytes{};   // if they have been read already
};

/// Whether a file that was found is left out.
using Skip = std::function<bool(const Candidate&)>;

/// The entries of a folder that matter, in the order of their names' bytes. They take little more
/// than their names.
class Listing {
 public:
  struct Entry {
    std::size_t name = 0;  // its place in `names_`
    unsigned char type = 0;
  };

  void add(std::string_view name, unsigned char type);
  void sort();

  /// The next one; null at the end.
  [[nodiscard]] const Entry* next();
  [[nodiscard]] const char* nameOf(const Entry& entry) const { return names_.data() + entry.name; }

 private:
  std::string names_;  // each ends in NUL
  std::vector<Entry> entries_;
  std::size_t position_ = 0;
};

/// Goes through files and folders in the order given, and through each folder and its sub-folders
/// in the order of the names' bytes, which is the same on every machine. In folders only *.PLM and
/// *.ALM count; unfinished files are passed over, and links to folders are not followed. Keeps the
/// names of the folders that are open.
class DocumentWalk {
 public:
  /// `counts` says which other names count in folders.
  explicit DocumentWalk(std::vector<std::string> paths, bool (*counts)(std::string_view) = nullptr)
      : named_(std::move(paths)), counts_(counts) {}

  /// The next one; nothing at the end.
  [[nodiscard]] std::optional<Candidate> next();

  /// What was passed over so far, except in folders without documents.
  [[nodiscard]] const PassedOver& passedOver() const { return passed_; }

 private:
  struct Folder {
    std::string path;  // ends in "/"
    Listing listing;
    int failure = 0;  // an error number: there may be more entries
  };

  [[nodiscard]] std::optional<Candidate> nextNamed();
  [[nodiscard]] std::optional<Candidate> nextInFolder();
  [[nodiscard]] std::optional<Candidate> enter(std::string path, bool named);
  [[nodiscard]] std::optional<Candidate> leave();
  void list(DIR* stream, Folder& folder);
  void consider(const dirent& entry, Folder& folder);

  std::vector<std::string> named_;
  bool (*counts_)(std::string_view);
  std::size_t position_ = 0;
  std::vector<Folder> open_;  // from the outermost one to the one that is being read
  std::uint64_t found_ = 0;   // below the outermost one
  PassedOver passed_;
  PassedOver passedBefore_;  // when the outermost one was entered
};

/// A document that was read.
struct DocumentReading {
  std::string_view bytes;  // within the buffer
  std::string complaint;   // why it could not be read; else ""
  bool vanished = false;   // it was removed between finding and reading, which is not an error
};

/// The largest file that is read. Documents have a little more than 4 GiB at most.
inline constexpr std::size_t largestDocument = std::size_t{8} << 30;

/// Reads a whole file into a buffer that can be used again for the next one. Follows links. Waits
/// for standard input and for a pipe that is named; one in a folder is refused, like everything
/// else that is not a regular file.
[[nodiscard]] DocumentReading readDocument(const Candidate& candidate, std::string& buffer,
                                           Stop stop);

}  // namespace wenlolib

#endif
