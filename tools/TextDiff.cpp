#include "TextDiff.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "EditSearch.h"

namespace wenlolib::tools {
namespace {

class Numbering {
 public:
  std::vector<std::uint32_t> of(const Lines& lines) {
    std::vector<std::uint32_t> numbers;
    numbers.reserve(lines.size());
    for (const std::string_view line : lines) {
      const auto next = static_cast<std::uint32_t>(known_.size());
      numbers.push_back(known_.try_emplace(line, next).first->second);
    }
    return numbers;
  }

 private:
  std::unordered_map<std::string_view, std::uint32_t> known_;
};

/// All but the lines that both begin with, and those that both end in.
Change middleOf(Numbers a, Numbers b) {
  Change middle{0, a.size(), 0, b.size()};
  const auto some = [&] { return middle.aBegin < middle.aEnd && middle.bBegin < middle.bEnd; };
  while (some() && a[middle.aBegin] == b[middle.bBegin]) {
    ++middle.aBegin;
    ++middle.bBegin;
  }
  while (some() && a[middle.aEnd - 1] == b[middle.bEnd - 1]) {
    --middle.aEnd;
    --middle.bEnd;
  }
  return middle;
}

/// Gathers neighbouring lines of a script into changes. The two texts begin at `x` and `y`.
std::vector<Change> gathered(const EditSearch::Script& script, std::size_t x, std::size_t y) {
  std::vector<Change> changes;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < script.removed.size() || j < script.added.size()) {
    Change change{x + i, 0, y + j, 0};
    while (i < script.removed.size() && script.removed[i]) ++i;
    while (j < script.added.size() && script.added[j]) ++j;
    change.aEnd = x + i;
    change.bEnd = y + j;
    const bool nothing = change.aBegin == change.aEnd && change.bBegin == change.bEnd;
    if (nothing) {  // a line that both have
      ++i;
      ++j;
    } else {
      changes.push_back(change);
    }
  }
  return changes;
}

}  // namespace

Lines linesOf(std::string_view text) {
  Lines lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end);
  }
  return lines;
}

std::vector<Change> changesBetween(const Lines& a, const Lines& b, std::size_t mostEdits) {
  Numbering numbering;
  const std::vector<std::uint32_t> aNumbers = numbering.of(a);
  const std::vector<std::uint32_t> bNumbers = numbering.of(b);
  const Change middle = middleOf(aNumbers, bNumbers);
  const std::size_t aSize = middle.aEnd - middle.aBegin;
  const std::size_t bSize = middle.bEnd - middle.bBegin;
  if (aSize == 0 && bSize == 0) return {};
  if (aSize == 0 || bSize == 0) return {middle};
  EditSearch search(Numbers(aNumbers).subspan(middle.aBegin, aSize),
                    Numbers(bNumbers).subspan(middle.bBegin, bSize));
  if (!search.run(mostEdits)) return {middle};
  return gathered(search.script(), middle.aBegin, middle.bBegin);
}

}  // namespace wenlolib::tools
