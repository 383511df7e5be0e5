#include "terminal/VisibleText.h"

#include <gtest/gtest.h>

#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

using namespace std::string_literals;

struct Case {
  std::string given;
  std::string expected;
};

TEST(Visible, WhatCouldSteerATerminalIsSpelledOut) {
  const Case cases[] = {
      {"", ""},
      {"plain ~", "plain ~"},
      {"Début 東京 🖨", "Début 東京 🖨"},
      {"a\tb\nc", "a\tb\nc"},
      {"\x1B[31m\r\a", "\\x1B[31m\\x0D\\x07"},
      {"a\0b\x7F"s, "a\\x00b\\x7F"},
      {"\u0085\u009B", "\\u{0085}\\u{009B}"},
      {"\u202E\u2066\u200B\uFEFF", "\\u{202E}\\u{2066}\\u{200B}\\u{FEFF}"},
      {"\U000E0041", "\\u{E0041}"},
      {"a\xFF\xC3z", "a\\xFF\\xC3z"},
      {"\xC0\xAF", "\\xC0\\xAF"},           // an overlong form
      {"\xED\xA0\x80", "\\xED\\xA0\\x80"},  // half a surrogate pair
      {"\xE6\x9D", "\\xE6\\x9D"},           // cut off
  };
  for (const Case& c : cases) EXPECT_EQ(visible(c.given), c.expected);
}

TEST(Visible, WithinALineLineBreaksAndTabsToo) {
  EXPECT_EQ(visibleInLine("a\tb\nc\x1B"), "a\\tb\\nc\\x1B");
}

TEST(DisplayWidth, ColumnsOnATerminal) {
  EXPECT_EQ(displayWidth(""), 0u);
  EXPECT_EQ(displayWidth("Début"), 5u);
  EXPECT_EQ(displayWidth("De\u0301but"), 5u);
  EXPECT_EQ(displayWidth("東京"), 4u);
  EXPECT_EQ(displayWidth("\U0001F5A8"), 2u);
  EXPECT_EQ(displayWidth("\x1B[31mred\x1B[0m"), 3u);
  EXPECT_EQ(displayWidth("\x1B[unended"), 9u);
}

TEST(Wrapped, BetweenWordsWithAnIndent) {
  EXPECT_EQ(wrapped("aa bb cc dd", 20, 2), "aa bb cc dd");
  EXPECT_EQ(wrapped("aa bb cc dd", 5, 2), "aa bb\n  cc\n  dd");
  EXPECT_EQ(wrapped("aa bb cc dd", 8, 0), "aa bb cc\ndd");
  EXPECT_EQ(wrapped("word-that-is-long b", 5, 1), "word-that-is-long\n b");
  EXPECT_EQ(wrapped("", 5, 1), "");
}

TEST(Table, ColumnsLineUp) {
  Table table({Table::Align::left, Table::Align::right});
  table.add({"東京", "1", "x"});
  table.add({"a", "1,000", ""});
  EXPECT_EQ(table.text(2), "  東京      1  x\n  a     1,000\n");
}

TEST(Table, ColoursTakeNoRoom) {
  const Paint paint(true);
  Table table;
  table.add({paint(Colour::bad, "error"), "b"});
  table.add({"ok", "b"});
  EXPECT_EQ(table.text(), "\x1B[31merror\x1B[0m  b\nok     b\n");
}

TEST(Table, TheLastColumnIsBrokenWithinTheWidth) {
  Table table;
  table.add({"name", "some words that do not fit"});
  table.add({"n", "short"});
  EXPECT_EQ(table.text(1, 20), " name  some words\n       that do not\n       fit\n n     short\n");
  EXPECT_EQ(table.text(1, 0), " name  some words that do not fit\n n     short\n");
}

TEST(Paint, OffLeavesTextsAsTheyAre) {
  EXPECT_EQ(Paint(false)(Colour::good, "text"), "text");
  EXPECT_EQ(Paint(true)(Colour::good, ""), "");
}

}  // namespace
}  // namespace wenlolib::tools
