#include "base/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

const std::string accepted[] = {
    "",
    "plain",
    "a\0b"s,
    "\x7F",
    "\xC2\x80",          // U+0080, the first of two bytes
    "\xDF\xBF",          // U+07FF
    "\xE0\xA0\x80",      // U+0800
    "\xED\x9F\xBF",      // U+D7FF, before the surrogates
    "\xEE\x80\x80",      // U+E000, after them
    "\xEF\xBF\xBF",      // U+FFFF
    "\xF0\x90\x80\x80",  // U+10000
    "\xF4\x8F\xBF\xBF",  // U+10FFFF
    "gr\xC3\xBC\xC3\x9F \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80",
};

const std::string refused[] = {
    "\x80",  // a lone continuation byte
    "\xBF",
    "\xC0\xAF",  // overlong
    "\xC1\xBF",
    "\xE0\x80\x80",
    "\xE0\x9F\xBF",
    "\xF0\x80\x80\x80",
    "\xF0\x8F\xBF\xBF",
    "\xED\xA0\x80",  // surrogates
    "\xED\xBF\xBF",
    "\xF4\x90\x80\x80",  // above U+10FFFF
    "\xF5\x80\x80\x80",
    "\xFE",
    "\xFF",
    "\xC3",  // cut short
    "\xE6",
    "\xE6\x97",
    "\xF0",
    "\xF0\x9F",
    "\xF0\x9F\x98",
    "\xC3"
    "a",  // no continuation byte
    "\xE6"
    "a",
    "\xE6"
    "a\xA5",
    "\xE6\x97"
    "a",
    "\xF0"
    "a",
    "\xF0\x9F"
    "aa",
    "\xF0\x9F"
    "a\x80",
    "\xF0\x9F\x98"
    "a",
};

TEST(IsUtf8, AcceptsWellFormedText) {
  for (const std::string& text : accepted)
    EXPECT_TRUE(isUtf8(text)) << testing::PrintToString(text);
}

TEST(IsUtf8, RefusesEverythingElse) {
  for (const std::string& text : refused)
    EXPECT_FALSE(isUtf8(text)) << testing::PrintToString(text);
}

TEST(IsUtf8, JudgesAFaultAtEveryPlaceOfALongText) {
  for (std::size_t at = 0; at < 40; ++at) {
    for (const std::string& text : accepted) {
      EXPECT_TRUE(isUtf8(std::string(at, 'x') + text + std::string(17, 'y'))) << at;
    }
    for (const std::string& text : refused) {
      EXPECT_FALSE(isUtf8(std::string(at, 'x') + text + std::string(17, 'y'))) << at;
      EXPECT_FALSE(isUtf8(std::string(at, 'x') + text)) << at;
    }
  }
}

TEST(Utf8OrNull, KeepsTextAndTurnsOtherBytesIntoNull) {
  EXPECT_EQ(utf8OrNull("text"), Text("text"));
  EXPECT_EQ(utf8OrNull(""), Text(""));
  EXPECT_EQ(utf8OrNull(std::nullopt), std::nullopt);
  EXPECT_EQ(utf8OrNull("\xFF"), std::nullopt);
}

TEST(Utf16From, CharactersAtTheEdgesOfEachLength) {
  struct Case {
    const char* text;
    std::u16string_view units;  // as the compiler makes them
  };
  constexpr Case cases[] = {
      {"", u""},
      {"\x7F", u"\x7F"},
      {"\u0080", u"\u0080"},
      {"\u07C0\u07FF", u"\u07C0\u07FF"},
      {"\u0800\uFFFD", u"\u0800\uFFFD"},
      {"\U00010000\U00010001", u"\U00010000\U00010001"},
      {"\U000103FF\U00010400\U0010FFFF", u"\U000103FF\U00010400\U0010FFFF"},
      {"a\u00E9\u6771\U0001F5A8b", u"a\u00E9\u6771\U0001F5A8b"},
  };
  for (const Case& c : cases) {
    std::uint16_t units[16];
    const std::size_t count = utf16From(c.text, units);
    EXPECT_EQ(std::u16string(units, units + count), c.units) << c.text;
  }
}

}  // namespace
}  // namespace wenlolib::tests
