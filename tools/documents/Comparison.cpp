#include "documents/Comparison.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <dtl/dtl.hpp>
#include <unordered_map>

#include "documents/DocumentText.h"
#include "reading/Codes.h"
#include "reading/Readable.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t mostComparisons = 200'000'000;

/// Lines by number, so that comparing two takes one step: equal lines have equal numbers.
using Numbers = std::vector<std::uint32_t>;

class Numbering {
 public:
  Numbers number(const Lines& lines) {
    Numbers numbers;
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

/// All lines except those that both begin with and those that both end with.
Change middleOf(const Numbers& a, const Numbers& b) {
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

Numbers slice(const Numbers& numbers, std::size_t begin, std::size_t end) {
  return {numbers.begin() + static_cast<std::ptrdiff_t>(begin),
          numbers.begin() + static_cast<std::ptrdiff_t>(end)};
}

/// Compares lines a limited number of times. After that no two are the same, which ends a search.
struct LimitedEquality {
  std::size_t* left;

  [[nodiscard]] bool impl(std::uint32_t a, std::uint32_t b) const {
    if (*left == 0) return false;
    --*left;
    return a == b;
  }
};

using EditSearch = dtl::Diff<std::uint32_t, Numbers, LimitedEquality>;

/// Gathers neighbouring lines of a script into changes. The two texts begin at `x` and `y`.
std::vector<Change> gather(const EditSearch& search, std::size_t x, std::size_t y) {
  std::vector<Change> changes;
  Change change{x, x, y, y};
  const auto close = [&] {
    if (change.aBegin < change.aEnd || change.bBegin < change.bEnd) changes.push_back(change);
  };
  for (const auto& [number, edit] : search.getSes().getSequence()) {
    if (edit.type == dtl::SES_DELETE) {
      ++change.aEnd;
    } else if (edit.type == dtl::SES_ADD) {
      ++change.bEnd;
    } else {  // a line that both have
      close();
      change = {change.aEnd + 1, change.aEnd + 1, change.bEnd + 1, change.bEnd + 1};
    }
  }
  close();
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
  const Numbers aNumbers = numbering.number(a);
  const Numbers bNumbers = numbering.number(b);
  const Change middle = middleOf(aNumbers, bNumbers);
  const std::size_t aSize = middle.aEnd - middle.aBegin;
  const std::size_t bSize = middle.bEnd - middle.bBegin;
  if (aSize == 0 && bSize == 0) return {};
  const std::size_t fewestEdits = std::max(aSize, bSize) - std::min(aSize, bSize);
  if (aSize == 0 || bSize == 0 || fewestEdits > mostEdits) return {middle};
  std::size_t comparisons = mostComparisons;
  EditSearch search(slice(aNumbers, middle.aBegin, middle.aEnd),
                    slice(bNumbers, middle.bBegin, middle.bEnd), LimitedEquality{&comparisons});
  // It gives up once it would have to remember more than two million places, which takes more than
  // 2800 edits. Otherwise it would begin again from there.
  search.onUnserious();
  search.compose();
  const bool tooMany = search.getEditDistance() > static_cast<long long>(mostEdits);
  if (tooMany || comparisons == 0) return {middle};
  return gather(search, middle.aBegin, middle.bBegin);
}

namespace {

constexpr std::size_t context = 3;

/// "3,4": four lines from the third on. The count of a single line is left out, as is usual.
std::string rangeText(std::size_t begin, std::size_t end) {
  const std::size_t count = end - begin;
  const std::size_t first = count == 0 ? begin : begin + 1;
  return count == 1 ? fmt::format("{}", first) : fmt::format("{},{}", first, count);
}

class Hunks {
 public:
  Hunks(const Lines& a, const Lines& b, const Paint& paint) : a_(a), b_(b), paint_(paint) {}

  /// Changes [first, last), whose surrounding lines meet.
  void add(const std::vector<Change>& changes, std::size_t first, std::size_t last) {
    const Change& head = changes[first];
    const Change& tail = changes[last - 1];
    const std::size_t before = std::min(context, head.aBegin);
    const std::size_t after = std::min(context, a_.size() - tail.aEnd);
    const std::string ranges =
        fmt::format("@@ -{} +{} @@", rangeText(head.aBegin - before, tail.aEnd + after),
                    rangeText(head.bBegin - before, tail.bEnd + after));
    text_ += paint_(Colour::faint, ranges) + "\n";
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
      const std::string shown = sign + visibleText(line);
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

namespace {

using receiver::Document;
using receiver::Field;

std::optional<std::string> valueOf(const Document& document, std::string_view name) {
  const auto found = std::ranges::find(document.fields, name, &Field::name);
  if (found == document.fields.end()) return std::nullopt;
  return found->value;
}

std::optional<std::string> cipherOf(const Document& document) {
  const auto name = cipherName(document.marker);
  return name ? std::optional(std::string(*name)) : std::nullopt;
}

/// The names of the fields of both, in order.
std::vector<std::string> namesOf(const Document& a, const Document& b) {
  std::vector<std::string> names;
  for (const Document* document : {&a, &b}) {
    for (const Field& field : document->fields) {
      if (std::ranges::find(names, field.name) == names.end()) names.push_back(field.name);
    }
  }
  return names;
}

class Differences {
 public:
  void add(std::string name, std::optional<std::string> a, std::optional<std::string> b) {
    if (a != b) found_.push_back({std::move(name), std::move(a), std::move(b)});
  }

  std::vector<Difference> list() && { return std::move(found_); }

 private:
  std::vector<Difference> found_;
};

/// Contents that nobody can decrypt are the same if their payloads are.
bool contentsAreSame(const Side& a, const Side& b) {
  if (a.contents || b.contents) return a.contents == b.contents;
  return readable(a.report)->digits == readable(b.report)->digits;
}

}  // namespace

Comparison compare(const Side& a, const Side& b) {
  const Document& aDocument = *readable(a.report);
  const Document& bDocument = *readable(b.report);
  Differences differences;
  differences.add("Verdict", std::string(wordFor(conditionOf(a.report.verdict))),
                  std::string(wordFor(conditionOf(b.report.verdict))));
  differences.add("Layout", std::string(wrapperName(aDocument.layout)),
                  std::string(wrapperName(bDocument.layout)));
  for (const std::string& name : namesOf(aDocument, bDocument)) {
    differences.add(name, valueOf(aDocument, name), valueOf(bDocument, name));
  }
  differences.add("Cipher", cipherOf(aDocument), cipherOf(bDocument));
  Comparison comparison;
  comparison.aTrusted = isTrusted(a.report);
  comparison.bTrusted = isTrusted(b.report);
  comparison.differences = std::move(differences).list();
  comparison.sameContents = contentsAreSame(a, b);
  if (comparison.sameContents || !a.contents || !b.contents) return comparison;
  comparison.aLines = linesOf(*a.contents);
  comparison.bLines = linesOf(*b.contents);
  comparison.changes = changesBetween(comparison.aLines, comparison.bLines);
  return comparison;
}

}  // namespace wenlolib::tools
