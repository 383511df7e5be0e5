#include "terminal/VisibleText.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "terminal/Output.h"

namespace wenlolib::tools {
namespace {

using namespace std::string_literals;

struct Case {
  std::string given;
  std::string expected;
};

/// The character in UTF-8.
std::string utf8(char32_t code) {
  const auto tail = [&](unsigned shift) {
    return static_cast<char>(0x80 | (code >> shift & 0x3F));
  };
  if (code < 0x80) return {static_cast<char>(code)};
  if (code < 0x800) return {static_cast<char>(0xC0 | code >> 6), tail(0)};
  if (code < 0x10000) return {static_cast<char>(0xE0 | code >> 12), tail(6), tail(0)};
  return {static_cast<char>(0xF0 | code >> 18), tail(12), tail(6), tail(0)};
}

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
  for (const Case& c : cases) EXPECT_EQ(visibleText(c.given), c.expected);
}

TEST(Visible, InvisibleCharactersOfEveryKind) {
  const struct {
    char32_t code;
    bool shown;
  } table[] = {
      {0x00A0, true},    // no-break space
      {0x00AD, false},   // soft hyphen
      {0x0301, true},    // combining acute accent
      {0x0378, false},   // not assigned
      {0x0600, false},   // sign before a number
      {0x061C, false},   // Arabic letter mark
      {0x070F, false},   // abbreviation mark
      {0x180E, false},   // vowel separator
      {0x200B, false},   // zero-width space
      {0x200D, false},   // zero-width joiner
      {0x2028, false},   // line separator
      {0x2029, false},   // paragraph separator
      {0x202E, false},   // right-to-left override
      {0x2065, false},   // not assigned, between format characters
      {0x20AC, true},    // euro sign
      {0xE000, false},   // for private use
      {0xF8FF, false},   // for private use
      {0xFEFF, false},   // byte order mark
      {0xFFFB, false},   // end of an annotation
      {0xFFFD, true},    // replacement character
      {0xFFFF, false},   // not a character
      {0x110BD, false},  // sign before a number
      {0x13430, false},  // joiner of hieroglyphs
      {0x1D173, false},  // beginning of a beam of notes
      {0x1F5A8, true},   // a printer
      {0xE0041, false},  // a tag
      {0x10FFFD, false}  // for private use
  };
  for (const auto& [code, shown] : table) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "\\u{%04X}", static_cast<unsigned>(code));
    EXPECT_EQ(visibleText(utf8(code)), shown ? utf8(code) : digits);
  }
}

TEST(Visible, WithinALineLineBreaksAndTabsToo) {
  EXPECT_EQ(visibleLine("a\tb\nc\x1B"), "a\\tb\\nc\\x1B");
}

TEST(DisplayWidth, ColumnsOnATerminal) {
  EXPECT_EQ(displayWidth(""), 0u);
  EXPECT_EQ(displayWidth("Début"), 5u);
  EXPECT_EQ(displayWidth("De\u0301but"), 5u);
  EXPECT_EQ(displayWidth("東京"), 4u);
  EXPECT_EQ(displayWidth("\U0001F389"), 2u);
  EXPECT_EQ(displayWidth("\x1B[31mred\x1B[0m"), 3u);
  EXPECT_EQ(displayWidth("\x1B[unended"), 9u);
}

TEST(DisplayWidth, OfCharacters) {
  const struct {
    char32_t code;
    std::size_t width;
  } table[] = {
      {U'a', 1},    {0x00E9, 1},   // with an accent of its own
      {0x0301, 0},                 // an accent on the character before
      {0x0300, 0},  {0x036F, 0},   // the first and the last mark of that block
      {0x02FF, 1},  {0x0370, 1},   // and their neighbours
      {0x0E31, 0},  {0x302A, 0},   // marks above and beside their letter
      {0x20DD, 0},  {0xFE0F, 0},   // an enclosing circle, a choice of shape
      {0x0416, 1},  {0x05D0, 1},   // Cyrillic, Hebrew
      {0x1100, 2},  {0xAC00, 2},   // Korean
      {0x3042, 2},  {0x6771, 2},   // Japanese
      {0xFF21, 2},  {0xFF76, 1},   // full and half width
      {0x20000, 2}, {0x4DC0, 1},   // a rare ideograph, a hexagram
      {0x231A, 2},  {0x2615, 2},   // pictures on the basic plane
      {0x1F389, 2}, {0x1F9FF, 2},  // and on a higher plane
      {0x1F5A8, 1}, {0x2764, 1},   // pictures drawn as wide as letters
      {0x00A0, 1},  {0x3000, 2},   // blanks
  };
  for (const auto& [code, width] : table) {
    EXPECT_EQ(displayWidth(utf8(code)), width) << std::hex << static_cast<unsigned>(code);
  }
}

TEST(Wrapped, BetweenWordsWithAnIndent) {
  EXPECT_EQ(wrap("aa bb cc dd", 20, 2), "aa bb cc dd");
  EXPECT_EQ(wrap("aa bb cc dd", 5, 2), "aa bb\n  cc\n  dd");
  EXPECT_EQ(wrap("aa bb cc dd", 8, 0), "aa bb cc\ndd");
  EXPECT_EQ(wrap("word-that-is-long b", 5, 1), "word-that-is-long\n b");
  EXPECT_EQ(wrap("", 5, 1), "");
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
