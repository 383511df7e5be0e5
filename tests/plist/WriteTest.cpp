#include "plist/PropertyList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "plist/FailuresThrown.h"
#include "support/FailingAllocations.h"
#include "support/SmallStack.h"

namespace wenlolib::plist {
namespace {

using namespace std::string_literals;

/// What a file of these bytes holds; nothing if it is refused.
std::optional<Dictionary> listIn(std::string_view bytes) {
  return read(bytes).dictionary;
}

Instant at(double seconds) {
  return Instant(Seconds(seconds));
}

/// `dictionary`, written and read again; nothing if either fails.
std::optional<Dictionary> again(const Dictionary& dictionary) {
  const Text text = write(dictionary);
  return text ? listIn(*text) : std::nullopt;
}

/// `value`, written under the key "k" and read again.
std::optional<Value> again(const Value& value) {
  const auto read = again(Dictionary{{"k", value}});
  if (!read || read->size() != 1) return std::nullopt;
  return read->at("k");
}

constexpr std::string_view head =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

/// The lines for `value` when it is written under the key "k".
std::string linesOf(const Value& value) {
  const Text text = write({{"k", value}});
  const std::string before = std::string(head) + "<dict>\n\t<key>k</key>\n";
  const std::string_view after = "</dict>\n</plist>\n";
  if (!text) return "(null)";
  EXPECT_TRUE(text->starts_with(before) && text->ends_with(after)) << *text;
  return text->substr(before.size(), text->size() - before.size() - after.size());
}

TEST(PropertyListWrite, WritesTheUsualForm) {
  const Dictionary dictionary{
      {"WENLIBUUID", "{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}"},
      {"a", Value::Array{1, Value::Array{}, Dictionary{{"x", Dictionary{}}}}},
      {"data", Value::Data{0, 1, 2}},
      {"\xC3\xA9", true},
  };
  const std::string expected = std::string(head) +
                               "<dict>\n"
                               "\t<key>WENLIBUUID</key>\n"
                               "\t<string>{3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63}</string>\n"
                               "\t<key>a</key>\n"
                               "\t<array>\n"
                               "\t\t<integer>1</integer>\n"
                               "\t\t<array/>\n"
                               "\t\t<dict>\n"
                               "\t\t\t<key>x</key>\n"
                               "\t\t\t<dict/>\n"
                               "\t\t</dict>\n"
                               "\t</array>\n"
                               "\t<key>data</key>\n"
                               "\t<data>\n"
                               "\tAAEC\n"
                               "\t</data>\n"
                               "\t<key>\xC3\xA9</key>\n"
                               "\t<true/>\n"
                               "</dict>\n"
                               "</plist>\n";
  EXPECT_EQ(write(dictionary), expected);
  EXPECT_EQ(write({}), std::string(head) + "<dict/>\n</plist>\n");
}

TEST(PropertyListWrite, WritesEachTypeOfValue) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<Value, std::string_view>> cases = {
      {true, "<true/>"},
      {false, "<false/>"},
      {0, "<integer>0</integer>"},
      {std::numeric_limits<std::int64_t>::min(), "<integer>-9223372036854775808</integer>"},
      {std::numeric_limits<std::uint64_t>::max(), "<integer>18446744073709551615</integer>"},
      {0.1, "<real>0.1</real>"},
      {3.0, "<real>3</real>"},
      {-0.0, "<real>-0</real>"},
      {1e300, "<real>1e+300</real>"},
      {std::nan(""), "<real>nan</real>"},
      {-std::nan(""), "<real>nan</real>"},
      {infinity, "<real>infinity</real>"},
      {-infinity, "<real>-infinity</real>"},
      {"", "<string></string>"},
      {"a<b>&\"'\r\n\t]]>", "<string>a&lt;b&gt;&amp;\"'&#13;\n\t]]&gt;</string>"},
      {Value::Data{}, "<data>\n\t</data>"},
      {at(0), "<date>1970-01-01T00:00:00Z</date>"},
      {at(1.999), "<date>1970-01-01T00:00:01Z</date>"},
      {at(-0.001), "<date>1969-12-31T23:59:59Z</date>"},
      {at(1709251199), "<date>2024-02-29T23:59:59Z</date>"},
      {at(1709247600), "<date>2024-02-29T23:00:00Z</date>"},
      {at(-62135683200), "<date>0000-12-31T00:00:00Z</date>"},
      {at(253402300800), "<date>10000-01-01T00:00:00Z</date>"},
      {at(-62135596800), "<date>0001-01-01T00:00:00Z</date>"},
      {at(-62167219201), "<date>-0001-12-31T23:59:59Z</date>"},
  };
  for (const auto& [value, lines] : cases) {
    EXPECT_EQ(linesOf(value), "\t" + std::string(lines) + "\n");
  }
}

TEST(PropertyListWrite, KeepsValueAndTypeOfEveryEntry) {
  const std::vector<Value> values = {
      true,
      false,
      0,
      -1,
      std::numeric_limits<std::int64_t>::min(),
      std::numeric_limits<std::int64_t>::max(),
      std::uint64_t{1} << 63,
      std::numeric_limits<std::uint64_t>::max(),
      0.0,
      1.0,
      0.1,
      -1e-310,
      1.0 / 3,
      std::numeric_limits<double>::max(),
      std::numeric_limits<double>::min(),
      std::numeric_limits<double>::denorm_min(),
      std::numeric_limits<double>::infinity(),
      -std::numeric_limits<double>::infinity(),
      "",
      " \t\n ",
      "\r",
      "a\r\nb\rc",
      "<&>]]>&amp;&#13;",
      "1",
      "\x7F\xC2\x80\xC2\x85\xE2\x80\xA8\xEE\x80\x80\xEF\xBF\xBD\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
      Value::Data{},
      Value::Data{0},
      Value::Data{0, 255},
      Value::Data(1000, 0xA5),
      at(0),
      at(1709251199),
      at(-62167219201),
      at(4e18),
      at(-4e18),
      Value::Array{},
      Dictionary{},
      Value::Array{Value::Array{}, Dictionary{}, true, 1, 1.0, "1", Value::Data{1}, at(1)},
      Dictionary{{"", ""}, {" k\r\n", 1}, {"<key>", Value::Array{Dictionary{{"&", 2}}}}},
  };
  for (std::size_t i = 0; i < values.size(); ++i) {
    const auto read = again(values[i]);
    ASSERT_TRUE(read) << "value " << i;
    EXPECT_TRUE(*read == values[i]) << "value " << i << '\n' << linesOf(values[i]);
  }
  EXPECT_TRUE(again(std::uint64_t{5}) == Value(5)) << "a number that fits must come back signed";
  EXPECT_TRUE(again(at(1.75)) == Value(at(1)));
}

TEST(PropertyListWrite, KeepsDataOfEveryLengthAtEveryDepth) {
  for (std::size_t depth = 0; depth < 12; ++depth) {
    for (std::size_t length = 0; length < 120; ++length) {
      Value::Data data;
      for (std::size_t i = 0; i < length; ++i) data.push_back(static_cast<std::uint8_t>(i * 37));
      Value value = data;
      for (std::size_t i = 0; i < depth; ++i) value = Value::Array{value};
      const auto read = again(value);
      ASSERT_TRUE(read && *read == value) << depth << ' ' << length;
    }
  }
}

TEST(PropertyListWrite, BreaksDataIntoLinesThatLeaveRoomForTheIndentation) {
  const std::string group = "AAAA";
  const auto line = [&](std::size_t groups) {
    std::string characters;
    for (std::size_t i = 0; i < groups; ++i) characters += group;
    return characters;
  };
  EXPECT_EQ(linesOf(Value::Data(54, 0)),
            "\t<data>\n\t" + line(17) + "\n\t" + line(1) + "\n\t</data>\n");
  Value deep = Value::Data(15, 0);
  for (int i = 0; i < 20; ++i) deep = Value::Array{deep};
  const std::string tabs(21, '\t');
  const std::string fewer(8, '\t');
  const std::string expected =
      tabs + "<data>\n" + fewer + line(4) + "\n" + fewer + line(1) + "\n" + tabs + "</data>\n";
  EXPECT_NE(linesOf(deep).find(expected), std::string::npos);
}

TEST(PropertyListWrite, AnswersNullWhereATextHasNoFormInXml) {
  std::vector<std::string> refused = {"\xEF\xBF\xBE", "\xEF\xBF\xBF",    "\x80", "\xC3", "\xC0\x80",
                                      "\xED\xA0\x80", "\xF4\x90\x80\x80"};
  for (char character = 0; character < ' '; ++character) {
    if (character != '\t' && character != '\n' && character != '\r') {
      refused.push_back(std::string(1, character));
    }
  }
  ASSERT_EQ(refused.size(), 7U + 29U);
  for (const std::string& text : refused) {
    EXPECT_FALSE(write({{"k", text}})) << text;
    EXPECT_FALSE(write({{"k", "before" + text + "after"}})) << text;
    EXPECT_FALSE(write({{text, true}})) << text;
    EXPECT_FALSE(write({{"k", Value::Array{Dictionary{{"l", text}}}}})) << text;
  }
}

TEST(PropertyListWrite, AnswersNullWhereADateCannotBeCarried) {
  for (const double seconds :
       {std::nan(""), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e300, -1e300, 4.1e18, -4.1e18}) {
    EXPECT_FALSE(write({{"k", at(seconds)}})) << seconds;
  }
}

TEST(PropertyListWrite, AnswersNullBeyondTheBoundForLevels) {
  const auto nested = [](std::size_t levels, const Value& innermost) {
    Value value = innermost;
    for (std::size_t level = 2; level < levels; ++level) value = Value::Array{value};
    return Dictionary{{"k", value}};
  };
  for (const Value& innermost : {Value(Value::Array{}), Value(Value::Array{true}),
                                 Value(Dictionary{}), Value(Dictionary{{"k", 1}})}) {
    const Dictionary deepest = nested(bounds.levels, innermost);
    EXPECT_EQ(again(deepest), deepest);
    EXPECT_FALSE(write(nested(bounds.levels + 1, innermost)));
  }
}

TEST(PropertyListWrite, TheDeepestListsTakeNoMoreStackThanOthers) {
  for (const bool arrays : {true, false}) {
    Value value = true;
    for (std::size_t level = 1; level < bounds.levels; ++level) {
      value = arrays ? Value(Value::Array{value, 1}) : Value(Dictionary{{"a", value}, {"b", 1}});
    }
    const Dictionary deepest{{"k", value}};
    std::optional<Dictionary> read;
    tests::onStack(tests::smallStack, [&] { read = again(deepest); });
    EXPECT_TRUE(read == deepest);
  }
}

TEST(PropertyListWrite, AnswersNullBeyondTheBoundForBytes) {
  const std::size_t around = write({{"k", ""}})->size();
  const std::string most(bounds.bytes - around, 'x');
  const Text text = write({{"k", most}});
  ASSERT_TRUE(text);
  EXPECT_EQ(text->size(), bounds.bytes);
  EXPECT_EQ(listIn(*text), (Dictionary{{"k", most}}));
  EXPECT_FALSE(write({{"k", most + "x"}}));
  EXPECT_FALSE(write({{"k", most.substr(1) + "<"}}))
      << "one character that takes four when escaped";
  EXPECT_FALSE(write({{"k", Value::Data(bounds.bytes * 3 / 4, 0)}}));
}

TEST(PropertyListWrite, CountsAnEscapedCharacterAsItIsWritten) {
  const std::size_t around = write({{"k", ""}})->size();
  const std::pair<std::string, std::size_t> escapes[] = {{"&", 5}, {"<", 4}, {">", 4}, {"\r", 5}};
  for (const auto& [character, escaped] : escapes) {
    const std::size_t room = bounds.bytes - around - escaped;
    for (const std::size_t before : {std::size_t{0}, room / 2, room}) {
      const std::string first = std::string(before, 'x') + character;
      const std::string rest(room - before, 'x');
      const Text text = write({{"k", first + rest}});
      ASSERT_TRUE(text) << character << before;
      EXPECT_EQ(text->size(), bounds.bytes) << character << before;
      EXPECT_TRUE(listIn(*text) == (Dictionary{{"k", first + rest}})) << character << before;
      EXPECT_FALSE(write({{"k", first + rest + "x"}})) << character << before;
      EXPECT_FALSE(write({{"k", "x" + first + rest}})) << character << before;
    }
    // What does not fit any more is not left out, though what follows it would fit.
    EXPECT_FALSE(write({{"k", std::string(bounds.bytes, 'x') + character}})) << character;
    EXPECT_FALSE(write({{std::string(bounds.bytes, 'x') + character, true}})) << character;
  }
}

TEST(PropertyListWrite, AnswersNullForSharedValuesThatWouldGrowWithoutEnd) {
  Value value = Value::Array{};
  for (int i = 0; i < 100; ++i) value = Value::Array{value, value};
  const tests::CountedAllocations counted;
  EXPECT_FALSE(write({{"k", value}}));
  EXPECT_GT(counted.largest(), bounds.bytes / 2) << "writing must stop only at the bound";
  EXPECT_LT(counted.largest(), bounds.bytes * 3);
}

TEST(PropertyListWrite, ThrowsForEveryFailedAllocationAndLeavesNothingBehind) {
  const Dictionary dictionary{{"d", Value::Data(100, 7)},
                              {"t", std::string(3000, '&')},
                              {"a", Value::Array{at(0), 1.5, 7, Dictionary{{"k", "v"}}}}};
  const Text expected = write(dictionary);
  ASSERT_TRUE(expected);
  EXPECT_GT(tests::failuresThrown([&] { return write(dictionary); }, expected), 5);
}

}  // namespace
}  // namespace wenlolib::plist
