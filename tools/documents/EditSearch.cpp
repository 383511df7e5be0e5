#include "documents/EditSearch.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t mostSteps = 200'000'000;

/// Whether the best way to a diagonal of round d comes from the one above (a line is put in), not
/// from the one to the left (a line is taken out). `before` is the round before. It begins one
/// diagonal later: what stands above has the same place there, what stands to the left the second
/// before that.
bool comesDown(const std::vector<std::size_t>& before, std::size_t d, std::size_t diagonal) {
  if (diagonal == 0) return true;
  if (diagonal == 2 * d) return false;
  return before[diagonal - 2] < before[diagonal];
}

}  // namespace

bool EditSearch::run(std::size_t mostEdits) {
  for (std::size_t d = 0; d <= mostEdits && steps_ < mostSteps; ++d) {
    if (round(d)) return true;
  }
  return false;
}

std::size_t EditSearch::start(std::size_t d, std::size_t diagonal) const {
  if (d == 0) return 0;
  const Reached& before = rounds_[d - 1];
  return comesDown(before, d, diagonal) ? before[diagonal] : before[diagonal - 2] + 1;
}

/// Ways that leave the grid are followed too. They do no harm: the way that keeps to the grid is
/// shorter, so the corner is reached first.
bool EditSearch::round(std::size_t d) {
  Reached reached(2 * d + 1);
  bool atEnd = false;
  for (std::size_t diagonal = 0; diagonal <= 2 * d && !atEnd; diagonal += 2) {
    std::size_t x = start(d, diagonal);
    std::size_t y = x + d - diagonal;
    ++steps_;
    for (; x < a_.size() && y < b_.size() && a_[x] == b_[y]; ++x, ++y) ++steps_;
    reached[diagonal] = x;
    atEnd = x >= a_.size() && y >= b_.size();
  }
  rounds_.push_back(std::move(reached));
  return atEnd;
}

EditSearch::Script EditSearch::script() const {
  Script script{std::vector<bool>(a_.size()), std::vector<bool>(b_.size())};
  std::size_t x = a_.size();
  std::size_t y = b_.size();
  for (std::size_t d = rounds_.size() - 1; d > 0; --d) {
    const std::size_t diagonal = x + d - y;
    const Reached& before = rounds_[d - 1];
    if (comesDown(before, d, diagonal)) {
      x = before[diagonal];
      y = x + d - diagonal - 1;
      script.added[y] = true;
    } else {
      x = before[diagonal - 2];
      y = x + d - diagonal + 1;
      script.removed[x] = true;
    }
  }
  return script;
}

}  // namespace wenlolib::tools
