#include <algorithm>

#include "Format.h"
#include "TextDiff.h"
#include "VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t context = 3;

/// "3,4": four lines from the third on; a single line without its number, as is usual.
std::string rangeText(std::size_t begin, std::size_t end) {
  const std::size_t count = end - begin;
  const std::string first = std::to_string(count == 0 ? begin : begin + 1);
  return count == 1 ? first : first + "," + std::to_string(count);
}

class Hunks {
 public:
  Hunks(const Lines& a, const Lines& b, const Paint& paint) : a_(a), b_(b), paint_(paint) {}

  /// Changes [first, last), whose surroundings meet.
  void add(const std::vector<Change>& changes, std::size_t first, std::size_t last) {
    const Change& head = changes[first];
    const Change& tail = changes[last - 1];
    const std::size_t before = std::min(context, head.aBegin);
    const std::size_t after = std::min(context, a_.size() - tail.aEnd);
    text_ +=
        paint_(Colour::faint, "@@ -" + rangeText(head.aBegin - before, tail.aEnd + after) + " +" +
                                  rangeText(head.bBegin - before, tail.bEnd + after) + " @@");
    text_ += '\n';
    std::size_t at = head.aBegin - before;
    for (std::size_t i = first; i < last; ++i) {
      lines(' ', a_, at, changes[i].aBegin);
      lines('-', a_, changes[i].aBegin, changes[i].aEnd);
      lines('+', b_, changes[i].bBegin, changes[i].bEnd);
      at = changes[i].aEnd;
    }
    lines(' ', a_, at, at + after);
  }

  std::string text() && { return std::move(text_); }

 private:
  void lines(char sign, const Lines& from, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      std::string_view line = from[i];
      const bool ended = line.ends_with('\n');
      if (ended) line.remove_suffix(1);
      const std::string shown = sign + visible(line);
      text_ += sign == ' ' ? shown : paint_(sign == '-' ? Colour::bad : Colour::good, shown);
      text_ += ended ? "\n" : "\n\\ no line break at the end\n";
    }
  }

  const Lines& a_;
  const Lines& b_;
  const Paint& paint_;
  std::string text_;
};

}  // namespace

std::string unifiedText(const Lines& a, const Lines& b, const std::vector<Change>& changes,
                        const Paint& paint) {
  Hunks hunks(a, b, paint);
  for (std::size_t first = 0; first < changes.size();) {
    std::size_t last = first + 1;
    while (last < changes.size() && changes[last].aBegin - changes[last - 1].aEnd <= 2 * context) {
      ++last;
    }
    hunks.add(changes, first, last);
    first = last;
  }
  return std::move(hunks).text();
}

}  // namespace wenlolib::tools
