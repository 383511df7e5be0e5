#include <gtest/gtest.h>

#include <random>
#include <string>

#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

TEST(ReplaceString, ReplacesEveryOccurrenceUntilNoneIsLeft) {
  const struct {
    Text string, before, after, result;
  } table[] = {
      {"a/b/c", "/", "-", "a-b-c"},
      {"a/b/c", "/", std::nullopt, "abc"},
      {"a/b/c", "/", "", "abc"},
      {"", "/", "-", ""},
      {"a/b", "/", "/", "a/b"},
      {"a/b", "x", "y", "a/b"},
      {"a/b", "a/bc", "y", "a/b"},
      {std::nullopt, "/", "-", std::nullopt},
      {"aaaa", "aa", "a", "a"},  // finds text that a replacement has joined
      {"aabb", "ab", "", ""},
      {"aaabbb", "ab", "", ""},
      {"xaabby", "ab", std::nullopt, "xy"},
      {"abcabc", "abc", "c", "cc"},
      {"aabcbc", "abc", "", ""},
      {"abc", "b", "long replacement", "along replacementc"},
      {"\xC3\xA9t\xC3\xA9", "\xC3\xA9", "e", "ete"},
      {"a\0b\0c"s, "\0"s, "-", "a-b-c"},
      {"Ab", "a", "x", "Ab"},  // literal, so case counts
  };
  for (const auto& row : table) {
    EXPECT_EQ(CommonTooWenlolib::replaceString(row.string, row.before, row.after), row.result)
        << row.string.value_or("(null)");
  }
}

TEST(ReplaceString, NothingToFindGivesTheStringBack) {
  EXPECT_EQ(CommonTooWenlolib::replaceString("abc", "", "x"), Text("abc"));
  EXPECT_EQ(CommonTooWenlolib::replaceString("abc", std::nullopt, "x"), Text("abc"));
  EXPECT_EQ(CommonTooWenlolib::replaceString("abc", "", std::nullopt), Text("abc"));
}

TEST(ReplaceString, BytesThatAreNotTextCountAsNull) {
  EXPECT_EQ(CommonTooWenlolib::replaceString("\xFF", "a", "b"), std::nullopt);
  EXPECT_EQ(CommonTooWenlolib::replaceString("abc", "\xFF", "x"), Text("abc"));
  EXPECT_EQ(CommonTooWenlolib::replaceString("abc", "b", "\xFF"), Text("ac"));
}

TEST(ReplaceString, ALongTextThatCollapsesStaysQuick) {
  const std::string pairs = std::string(20000, 'a') + std::string(20000, 'b');
  EXPECT_EQ(CommonTooWenlolib::replaceString(pairs, "ab", ""), Text(""));
}

TEST(ReplaceString, RemovesAllOfVeryManyFinds) {
  std::string text, expected;
  for (int i = 0; i < 400'000; ++i) {
    text += "ab,";
    expected += "ab";
  }
  const Text result = CommonTooWenlolib::replaceString(text, ",", "");
  EXPECT_TRUE(result == expected) << result.value_or("(null)").size();
}

/// Replacement as it is defined: every search starts at the beginning.
std::string replacedFromTheBeginning(std::string text, const std::string& before,
                                     const std::string& after) {
  for (auto at = text.find(before); at != text.npos; at = text.find(before)) {
    text.replace(at, before.size(), after);
  }
  return text;
}

/// Texts of two letters, in which finds overlap and replacements join with their neighbours.
class ShortTexts {
 public:
  std::string ofLength(std::size_t least, std::size_t most) {
    std::string text(least + random_() % (most - least + 1), 'a');
    for (char& letter : text) letter = random_() % 2 == 0 ? 'a' : 'b';
    return text;
  }

 private:
  std::mt19937 random_{20240315};
};

TEST(ReplaceString, EqualsASearchFromTheBeginningEveryTime) {
  ShortTexts texts;
  int changed = 0;
  for (int round = 0; round < 20'000; ++round) {
    const std::string before = texts.ofLength(1, 4);
    const std::string after = texts.ofLength(0, before.size() - 1);
    const std::string text = texts.ofLength(0, 24);
    const std::string expected = replacedFromTheBeginning(text, before, after);
    ASSERT_EQ(CommonTooWenlolib::replaceString(text, before, after), expected)
        << text << ": " << before << " by " << after;
    if (expected != text) ++changed;
  }
  EXPECT_GT(changed, 10'000);
}

/// Replacements of the same length change the order of the letters, so they end too.
TEST(ReplaceString, EqualsThatSearchWhereTheLengthStays) {
  ShortTexts texts;
  for (int round = 0; round < 5'000; ++round) {
    const std::string before = texts.ofLength(2, 3);
    const std::string after = texts.ofLength(before.size(), before.size());
    if (before == after) continue;
    const std::string text = texts.ofLength(0, 12);
    ASSERT_EQ(CommonTooWenlolib::replaceString(text, before, after),
              replacedFromTheBeginning(text, before, after))
        << text << ": " << before << " by " << after;
  }
}

}  // namespace
}  // namespace wenlolib::tests
