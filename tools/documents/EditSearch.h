/// The fewest edits that lead from one sequence to another.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_EDITSEARCH_H
#define WENLOLIB_TOOLS_DOCUMENTS_EDITSEARCH_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace wenlolib::tools {

/// Lines by number, so that comparing two takes one step: equal lines have equal numbers.
using Numbers = std::span<const std::uint32_t>;

/// The greedy search for a shortest edit script (Myers, 1986): after round d it knows how far d
/// edits lead on every diagonal. Diagonals are counted from -d.
class EditSearch {
 public:
  EditSearch(Numbers a, Numbers b) : a_(a), b_(b) {}

  /// Whether the ends are reached within so many edits, in a time with a bound.
  [[nodiscard]] bool run(std::size_t mostEdits);

  /// After a successful run: which lines are taken out of a, and which of b are put in.
  struct Script {
    std::vector<bool> removed;
    std::vector<bool> added;
  };
  [[nodiscard]] Script script() const;

 private:
  using Reached = std::vector<std::size_t>;  // how far in `a`, for each diagonal

  [[nodiscard]] bool round(std::size_t d);
  [[nodiscard]] std::size_t start(std::size_t d, std::size_t diagonal) const;

  Numbers a_;
  Numbers b_;
  std::size_t steps_ = 0;
  std::vector<Reached> rounds_;
};

}  // namespace wenlolib::tools

#endif
