/// What differs between two documents, and between two texts line by line.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_COMPARISON_H
#define WENLOLIB_TOOLS_DOCUMENTS_COMPARISON_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "terminal/Output.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

using Lines = std::vector<std::string_view>;

/// The lines of a text, each with its line break; the last one may lack it.
[[nodiscard]] Lines linesOf(std::string_view text);

/// Lines [aBegin, aEnd) of one text are replaced by lines [bBegin, bEnd) of the other.
struct Change {
  std::size_t aBegin = 0;
  std::size_t aEnd = 0;
  std::size_t bBegin = 0;
  std::size_t bEnd = 0;

  friend bool operator==(const Change&, const Change&) = default;
};

/// The fewest lines to take out and put in, in order. Texts that differ in more than `mostEdits`
/// lines, or take too long to compare, are one change from the first line that differs to the last.
[[nodiscard]] std::vector<Change> changesBetween(const Lines& a, const Lines& b,
                                                 std::size_t mostEdits = 2000);

/// The changes with three lines around them, in the usual form: "@@ -1,4 +1,3 @@", then lines that
/// begin with a blank, "-" or "+".
[[nodiscard]] std::string unifiedText(const Lines& a, const Lines& b,
                                      const std::vector<Change>& changes, const Paint& paint);

/// A document that is compared. Something of it can be read, so there is something to compare.
struct Side {
  receiver::Report report;
  std::optional<std::string> contents;  // nothing if they cannot be decrypted
};

/// One value that differs; nothing if a layout does not have it.
struct Difference {
  std::string name;  // "Verdict", "Layout", "Cipher", or the name of a field
  std::optional<std::string> a;
  std::optional<std::string> b;
};

struct Comparison {
  std::vector<Difference> differences;
  bool aTrusted = true;  // the checksum vouches for what is compared
  bool bTrusted = true;
  bool sameContents = true;
  Lines aLines;  // of the contents; views into the sides
  Lines bLines;
  std::vector<Change> changes;  // of the lines

  [[nodiscard]] bool same() const { return differences.empty() && sameContents; }
};

/// Both must outlive the answer.
[[nodiscard]] Comparison compare(const Side& a, const Side& b);

}  // namespace wenlolib::tools

#endif
