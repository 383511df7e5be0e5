/// What differs between two texts, line by line.
#ifndef WENLOLIB_TOOLS_TEXTDIFF_H
#define WENLOLIB_TOOLS_TEXTDIFF_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Terminal.h"

namespace wenlolib::tools {

using Lines = std::vector<std::string_view>;

/// The lines of a text, each with its line break; the last one may lack it.
[[nodiscard]] Lines linesOf(std::string_view text);

/// Lines [aBegin, aEnd) of the one text stand where lines [bBegin, bEnd) of the other do.
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

}  // namespace wenlolib::tools

#endif
