#include "documents/Comparison.h"

#include <gtest/gtest.h>

#include <random>

namespace wenlolib::tools {
namespace {

using Changes = std::vector<Change>;

std::size_t commonLength(const Lines& a, const Lines& b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (const std::string_view line : a) {
    const std::vector<std::size_t> before = row;
    for (std::size_t j = 0; j < b.size(); ++j) {
      row[j + 1] = line == b[j] ? before[j] + 1 : std::max(before[j + 1], row[j]);
    }
  }
  return row[b.size()];
}

/// `a` after the changes.
Lines applied(const Lines& a, const Lines& b, const Changes& changes) {
  Lines result;
  std::size_t at = 0;
  const auto copy = [&](const Lines& from, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) result.push_back(from[i]);
  };
  for (const Change& change : changes) {
    copy(a, at, change.aBegin);
    EXPECT_EQ(result.size(), change.bBegin);
    copy(b, change.bBegin, change.bEnd);
    at = change.aEnd;
  }
  copy(a, at, a.size());
  return result;
}

std::size_t editsIn(const Changes& changes) {
  std::size_t edits = 0;
  for (const Change& change : changes) {
    edits += change.aEnd - change.aBegin + change.bEnd - change.bBegin;
  }
  return edits;
}

TEST(LinesOf, EachWithItsBreak) {
  EXPECT_EQ(linesOf(""), Lines());
  EXPECT_EQ(linesOf("a"), Lines({"a"}));
  EXPECT_EQ(linesOf("a\n\nb"), Lines({"a\n", "\n", "b"}));
  EXPECT_EQ(linesOf("\n"), Lines({"\n"}));
}

TEST(ChangesBetween, SimpleCases) {
  EXPECT_EQ(changesBetween({}, {}), Changes());
  EXPECT_EQ(changesBetween({"a"}, {"a"}), Changes());
  EXPECT_EQ(changesBetween({}, {"a", "b"}), Changes({{0, 0, 0, 2}}));
  EXPECT_EQ(changesBetween({"a", "b"}, {}), Changes({{0, 2, 0, 0}}));
  EXPECT_EQ(changesBetween({"a", "b", "c"}, {"a", "x", "c"}), Changes({{1, 2, 1, 2}}));
  EXPECT_EQ(changesBetween({"a", "b", "c", "d"}, {"b", "c", "x"}),
            Changes({{0, 1, 0, 0}, {3, 4, 2, 3}}));
}

TEST(ChangesBetween, RandomTextsInTheFewestEdits) {
  std::mt19937 made(1);
  const Lines alphabet = {"a", "b", "c", "d"};
  std::size_t most = 0;
  for (unsigned round = 0; round < 3000; ++round) {
    Lines a(made() % 30);
    Lines b(made() % 30);
    for (auto* lines : {&a, &b}) {
      for (std::string_view& line : *lines) line = alphabet[made() % (1 + round % 4)];
    }
    const Changes changes = changesBetween(a, b);
    ASSERT_EQ(applied(a, b, changes), b);
    ASSERT_EQ(editsIn(changes), a.size() + b.size() - 2 * commonLength(a, b));
    most = std::max(most, editsIn(changes));
  }
  EXPECT_GT(most, 30u);
}

TEST(ChangesBetween, TooManyEditsAreOneChange) {
  const Lines a = {"same", "a", "b", "c", "d", "end"};
  const Lines b = {"same", "w", "b", "x", "d", "y", "end"};
  EXPECT_EQ(changesBetween(a, b, 5).size(), 3u);
  EXPECT_EQ(changesBetween(a, b, 4), Changes({{1, 5, 1, 6}}));
}

TEST(ChangesBetween, LargeTextsThatDifferThroughoutAreOneChange) {
  std::mt19937 made(2);
  const Lines alphabet = {"a", "b"};
  Lines a(200'000);
  Lines b(200'000);
  for (auto* lines : {&a, &b}) {
    for (std::string_view& line : *lines) line = alphabet[made() % 2];
  }
  a.front() = b.back() = "first";
  b.front() = a.back() = "last";
  EXPECT_EQ(changesBetween(a, b), Changes({{0, a.size(), 0, b.size()}}));
  a.resize(100'000);
  EXPECT_EQ(changesBetween(a, b), Changes({{0, a.size(), 0, b.size()}}));
}

TEST(UnifiedText, HunksMeetWhereTheirContextDoes) {
  Lines a;
  for (int i = 0; i < 20; ++i) a.push_back(i % 2 == 0 ? "even\n" : "odd\n");
  const auto hunksWith = [&](std::size_t distance) {
    Lines b = a;
    b[3] = "new\n";
    b[3 + distance] = "new\n";
    const std::string text =
        unifiedText(a, b, {{3, 4, 3, 4}, {3 + distance, 4 + distance, 3 + distance, 4 + distance}},
                    Paint(false));
    std::size_t hunks = 0;
    for (std::size_t at = 0; (at = text.find("@@ -", at)) != std::string::npos; ++at) ++hunks;
    return hunks;
  };
  EXPECT_EQ(hunksWith(7), 1u);
  EXPECT_EQ(hunksWith(8), 2u);
}

TEST(UnifiedText, AnEmptySideAndAMissingBreak) {
  EXPECT_EQ(unifiedText({}, {"a\n", "b"}, {{0, 0, 0, 2}}, Paint(false)),
            "@@ -0,0 +1,2 @@\n+a\n+b\n\\ no line break at the end\n");
}

}  // namespace
}  // namespace wenlolib::tools
