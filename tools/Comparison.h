/// What differs between two documents.
#ifndef WENLOLIB_TOOLS_COMPARISON_H
#define WENLOLIB_TOOLS_COMPARISON_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "TextDiff.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

/// A document that is compared. Its form holds, so that there is something to compare.
struct Side {
  receiver::Report report;
  std::optional<std::string> contents;  // nothing where there is no date to decrypt them by
};

/// One value that differs; nothing where a layout does not have it.
struct Difference {
  std::string name;  // "Verdict", "Layout", "Cipher", or the name of a field
  std::optional<std::string> a;
  std::optional<std::string> b;
};

struct Comparison {
  std::vector<Difference> differences;
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
