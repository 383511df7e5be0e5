#include "plist/PropertyList.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "plist/FailuresThrown.h"
#include "support/FailingAllocations.h"

namespace wenlolib::plist {
namespace {

using namespace std::string_literals;

/// What a file of these bytes holds; nothing if it is refused.
std::optional<Dictionary> listIn(std::string_view bytes) {
  return read(bytes).dictionary;
}

std::string repeated(std::string_view text, std::size_t times) {
  std::string result;
  result.reserve(text.size() * times);
  for (std::size_t i = 0; i < times; ++i) result += text;
  return result;
}

std::string inPlist(std::string_view content) {
  return "<plist version=\"1.0\">" + std::string(content) + "</plist>";
}

/// The value that `element` is read as, under the key "k" of a dictionary; nothing if the document
/// is refused.
std::optional<Value> valueOf(std::string_view element) {
  const auto read = listIn(inPlist("<dict><key>k</key>" + std::string(element) + "</dict>"));
  if (!read || read->size() != 1) return std::nullopt;
  return read->at("k");
}

Instant at(double seconds) {
  return Instant(Seconds(seconds));
}

TEST(PropertyListRead, ReadsEveryTypeOfValue) {
  const std::vector<std::pair<std::string_view, Value>> cases = {
      {"<true/>", true},
      {"<false></false>", false},
      {"<true> </true>", true},
      {"<string>text</string>", "text"},
      {"<string/>", ""},
      {"<string> kept \n</string>", " kept \n"},
      {"<string>&lt;&amp;&gt;&quot;&apos;&#13;&#xE9;</string>", "<&>\"'\r\xC3\xA9"},
      {"<string>a<![CDATA[<b>]]><!-- not this -->c</string>", "a<b>c"},
      {"<string>one\r\ntwo\rthree</string>", "one\ntwo\nthree"},
      {"<data>AAEC/w==</data>", Value::Data{0, 1, 2, 255}},
      {"<data/>", Value::Data{}},
      {"<array/>", Value::Array{}},
      {"<array><array><true/></array><string>x</string></array>",
       Value::Array{Value::Array{true}, "x"}},
      {"<dict/>", Dictionary{}},
      {"<dict><key>a</key><integer>1</integer><key></key><true/></dict>",
       Dictionary{{"a", 1}, {"", true}}},
  };
  for (const auto& [element, expected] : cases) {
    const auto value = valueOf(element);
    ASSERT_TRUE(value) << element;
    EXPECT_TRUE(*value == expected) << element;
  }
}

TEST(PropertyListRead, ReadsReferencesToCharactersOfEveryLength) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"&#x9;&#xA;&#xD;&#x20;", "\t\n\r "},
      {"&#x7F;&#x80;", "\x7F\xC2\x80"},
      {"&#127;&#128;", "\x7F\xC2\x80"},
      {"&#x7FF;&#x800;", "\xDF\xBF\xE0\xA0\x80"},
      {"&#2047;&#2048;", "\xDF\xBF\xE0\xA0\x80"},
      {"&#xD7FF;&#xE000;", "\xED\x9F\xBF\xEE\x80\x80"},
      {"&#xFFFD;&#x10000;", "\xEF\xBF\xBD\xF0\x90\x80\x80"},
      {"&#65533;&#65536;", "\xEF\xBF\xBD\xF0\x90\x80\x80"},
      {"&#x10FFFF;&#1114111;", "\xF4\x8F\xBF\xBF\xF4\x8F\xBF\xBF"},
  };
  for (const auto& [references, text] : cases) {
    EXPECT_EQ(valueOf("<string>" + references + "</string>"), Value(text)) << references;
    // With half of a pair elsewhere the document is read once more, with that half marked.
    EXPECT_EQ(listIn(inPlist("<dict><key>" + references + "</key><string>" + references +
                             "</string><key>k</key><string>&#xD800;</string></dict>")),
              (Dictionary{{text, text}}))
        << references;
  }
  for (const std::string reference : {"&#x1F;", "&#xFFFE;", "&#xFFFF;", "&#x110000;"}) {
    EXPECT_FALSE(valueOf("<string>" + reference + "</string>")) << reference;
  }
}

TEST(PropertyListRead, ReadsIntegersOfSixtyFourBitsAndRefusesAnyOther) {
  constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
  const std::vector<std::pair<std::string_view, std::optional<Value>>> cases = {
      {"0", 0},
      {"-0", 0},
      {"+7", 7},
      {" \n\t42 ", 42},
      {"007", 7},
      {"-12", -12},
      {"9223372036854775807", highest},
      {"9223372036854775808", std::uint64_t{1} << 63},
      {"18446744073709551615", std::numeric_limits<std::uint64_t>::max()},
      {"18446744073709551616", {}},
      {"-9223372036854775808", lowest},
      {"-9223372036854775809", {}},
      {"99999999999999999999999999", {}},
      {"0x1F", 31},
      {"0Xff", 255},
      {"-0x10", -16},
      {"0xFFFFFFFFFFFFFFFF", std::numeric_limits<std::uint64_t>::max()},
      {"0x10000000000000000", {}},
      {"0x", {}},
      {"", {}},
      {" ", {}},
      {"-", {}},
      {"--1", {}},
      {"+-1", {}},
      {"1 2", {}},
      {"1.0", {}},
      {"1e3", {}},
      {"FF", {}},
      {"12a", {}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_TRUE(valueOf("<integer>" + std::string(text) + "</integer>") == expected) << text;
  }
}

TEST(PropertyListRead, ReadsRealsThatADoubleHolds) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const std::vector<std::pair<std::string_view, std::optional<Value>>> cases = {
      {"0", 0.0},
      {"3", 3.0},
      {" 1.5\n", 1.5},
      {"-1.25e-3", -0.00125},
      {"+2.5E+10", 2.5e10},
      {".5", 0.5},
      {"0.1", 0.1},
      {"5e-324", std::numeric_limits<double>::denorm_min()},
      {"1.7976931348623157e+308", std::numeric_limits<double>::max()},
      {"inf", infinity},
      {"Infinity", infinity},
      {"+infinity", infinity},
      {"-INF", -infinity},
      {"0e999", 0.0},
      {"1e999", {}},
      {"1e-999", {}},
      {"1,5", {}},
      {"", {}},
      {".", {}},
      {"-", {}},
      {"--1", {}},
      {"+-1", {}},
      {"-+inf", {}},
      {"1.5x", {}},
      {"1 .5", {}},
      {"0x10", {}},
      {"1e", {}},
      {"infinite", {}},
      {"nan(1)", {}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_TRUE(valueOf("<real>" + std::string(text) + "</real>") == expected) << text;
  }
  for (const std::string text : {"nan", "NaN", "-nan"}) {
    const auto value = valueOf("<real>" + text + "</real>");
    ASSERT_TRUE(value) << text;
    const auto isNan = [](const auto& held) {
      if constexpr (std::is_same_v<std::decay_t<decltype(held)>, double>) return std::isnan(held);
      return false;
    };
    EXPECT_TRUE(value->visit(isNan)) << text;
  }
  const auto zero = valueOf("<real>-0</real>");
  ASSERT_TRUE(zero && *zero == Value(0.0));
  EXPECT_TRUE(zero->visit([](const auto& held) {
    if constexpr (std::is_same_v<std::decay_t<decltype(held)>, double>) return std::signbit(held);
    return false;
  }));
}

TEST(PropertyListRead, ReadsDatesThatTheCalendarHas) {
  const std::vector<std::pair<std::string_view, std::optional<Value>>> cases = {
      {"1970-01-01T00:00:00Z", at(0)},
      {"\n2024-02-29T23:59:59Z ", at(1709251199)},
      {"1969-12-31T23:59:59Z", at(-1)},
      {"2000-02-29T00:00:00Z", at(951782400)},
      {"0001-01-01T00:00:00Z", at(-62135596800)},
      {"0000-03-01T00:00:00Z", at(-62162035200)},
      {"9999-12-31T23:59:59Z", at(253402300799)},
      {"10000-01-01T00:00:00Z", at(253402300800)},
      {"-0001-12-31T23:59:59Z", at(-62167219201)},
      {"100000000000-01-01T00:00:00Z", at(3155695137832780800)},
      {"200000000000-01-01T00:00:00Z", {}},
      {"999999999999-01-01T00:00:00Z", {}},
      {"584554051223-01-01T00:00:00Z", {}},  // about 2^64 seconds after 1970
      {"99999999999999999999-01-01T00:00:00Z", {}},
      {"2023-02-29T00:00:00Z", {}},
      {"1900-02-29T00:00:00Z", {}},
      {"2024-13-01T00:00:00Z", {}},
      {"2024-00-01T00:00:00Z", {}},
      {"2024-01-00T00:00:00Z", {}},
      {"2024-04-31T00:00:00Z", {}},
      {"2024-01-01T24:00:00Z", {}},
      {"2024-01-01T00:60:00Z", {}},
      {"2024-01-01T00:00:60Z", {}},
      {"2024-01-01T00:00:00", {}},
      {"2024-01-01 00:00:00Z", {}},
      {"2024-01-01T00:00:00ZZ", {}},
      {"2024-01-01T00:00:00.5Z", {}},
      {"2024-01-01T00:00:00+01:00", {}},
      {"2024-1-1T00:00:00Z", {}},
      {"24-01-01T00:00:00Z", at(-61409836800)},
      {"1-01-01T00:00:00Z", at(-62135596800)},
      {"-1-12-31T23:59:59Z", at(-62167219201)},
      {"-01-01T00:00:00Z", {}},
      {"+2024-01-01T00:00:00Z", {}},
      {"2024-01-01", {}},
      {"", {}},
  };
  for (const auto& [text, expected] : cases) {
    EXPECT_TRUE(valueOf("<date>" + std::string(text) + "</date>") == expected) << text;
  }
}

TEST(PropertyListRead, ReadsBase64InAnyLayoutAndRefusesWhatIsNotBase64) {
  // The vectors of RFC 4648, section 10, and other layouts of them.
  const std::vector<std::pair<std::string_view, std::optional<std::string_view>>> cases = {
      {"", ""},
      {"Zg==", "f"},
      {"Zm8=", "fo"},
      {"Zm9v", "foo"},
      {"Zm9vYg==", "foob"},
      {"Zm9vYmE=", "fooba"},
      {"Zm9vYmFy", "foobar"},
      {"\n\tZm9v\n\tYmE=\n", "fooba"},
      {"Z m 9 v", "foo"},
      {"Zm8 =", "fo"},
      {"Zg= =", "f"},
      {"Z", {}},
      {"Zg", {}},
      {"Zg=", {}},
      {"Zm9vZ", {}},
      {"Zg==Zg==", {}},
      {"Zg==\nZm9v", {}},
      {"Zm8==", {}},
      {"Z===", {}},
      {"====", {}},
      {"=Zg=", {}},
      {"Zg=x", {}},
      {"Zm9v====", {}},
      {"Zm-v", {}},
      {"Zm_v", {}},
      {"Zm9v!", {}},
      {"Zm\xC3\xA9v", {}},
  };
  for (const auto& [text, expected] : cases) {
    const auto value = valueOf("<data>" + std::string(text) + "</data>");
    ASSERT_EQ(value.has_value(), expected.has_value()) << text;
    if (!expected) continue;
    ASSERT_TRUE(value->data()) << text;
    EXPECT_EQ(std::string(value->data()->begin(), value->data()->end()), *expected) << text;
  }
}

TEST(PropertyListRead, AcceptsOnlyADictionaryAtTheRootWhateverStandsAroundIt) {
  for (const std::string& document : {
           inPlist("<dict/>"),
           inPlist(" \n<!-- note --><dict/> <?note?>\n"),
           "<plist><dict></dict></plist>"s,
           "<dict/>"s,
           "<?xml version=\"1.0\"?>\n<!DOCTYPE plist>\n<plist><dict/></plist>"s,
           "<!DOCTYPE plist SYSTEM \"file://localhost/x.dtd\"><plist><dict/></plist>"s,
           "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://a/x.dtd\"><dict/>"s,
           "<?xml version=\"1.0\" standalone=\"yes\"?><plist><dict/></plist>\n\n"s,
           "\xEF\xBB\xBF<plist><dict/></plist>"s,
       }) {
    EXPECT_EQ(listIn(document), Dictionary{}) << document;
  }
}

struct Place {
  std::string content;
  platform::ListState state;
  std::string what;
  std::size_t line = 1;
};

TEST(PropertyListRead, SaysWhyAFileHoldsNoDictionaryAndWhere) {
  using enum platform::ListState;
  const std::string entry = "<key>k</key><true/>";
  const Place places[] = {
      {"", empty, "", 0},
      {"{ a = b; }", oldForm, "", 0},
      {" \n// made by hand\n{ a = b; }", oldForm, "", 0},
      {"plain text", oldForm, "", 0},
      {inPlist("<array/>"), otherRoot, "its root is not a dictionary"},
      {inPlist("<string>x</string>"), otherRoot, "its root is not a dictionary"},
      {"<plist/>", damaged, "it holds no value", 0},
      {"<html/>", damaged, "property lists have no such element"},
      {"<plist>\n<dict>\n<key>k</key>\n</dict>\n</plist>", damaged, "a key has no value", 4},
      {"<plist>\n<dict>\n<true/></dict>\n</plist>", damaged, "a value has no key", 3},
      {"<plist>\n<dict>x</dict>\n</plist>", damaged, "there is text between the values", 2},
      {inPlist("<dict>" + entry + "</dict><dict/>"), damaged, "something follows the root"},
      {"<plist>\n\n<dict>" + entry, damaged, "no element found", 3},
      {"<plist>\n<dict></plist>", damaged, "mismatched tag", 2},
      {"\n\n<plist><dict>&unknown;", damaged, "undefined entity", 3},
      {"<!DOCTYPE plist [\n<!ENTITY e 'x'>]><plist/>", damaged,
       "it declares entities or elements of its own", 2},
      {inPlist(repeated("<dict><key>k</key>", 600)), tooLarge,
       "arrays and dictionaries are nested too deeply"},
      {std::string(bounds.bytes + 1, ' '), tooLarge, "", 0},
  };
  for (const Place& place : places) {
    const platform::ListReading reading = read(place.content);
    EXPECT_EQ(reading.state, place.state) << place.content.substr(0, 80);
    EXPECT_EQ(reading.fault.what, place.what) << place.content.substr(0, 80);
    EXPECT_EQ(reading.fault.line, place.line) << place.content.substr(0, 80);
    EXPECT_FALSE(reading.dictionary) << place.content.substr(0, 80);
  }
  EXPECT_EQ(read("<plist>\n<dict></plist>").fault.byte, 16U);
}

TEST(PropertyListRead, LeavesOutAValueThatCannotBeCarriedAndKeepsTheOthers) {
  for (const std::string_view value :
       {"<integer>18446744073709551616</integer>", "<integer>x</integer>", "<real>1e999</real>",
        "<date>2023-02-29T00:00:00Z</date>", "<date>never</date>", "<data>Zm9v!</data>",
        "<true>yes</true>"}) {
    const std::string text(value);
    const platform::ListReading reading =
        read(inPlist("<dict><key>a</key><true/><key>k</key>" + text + "<key>l</key><array>" + text +
                     "<false/></array></dict>"));
    EXPECT_EQ(reading.state, platform::ListState::partial) << value;
    EXPECT_EQ(reading.dictionary, (Dictionary{{"a", true}, {"l", Value::Array{false}}})) << value;
    EXPECT_FALSE(listIn(inPlist("<dict>" + text + "</dict>")))
        << "it needs a key, though it is left out";
    EXPECT_FALSE(listIn(inPlist(text))) << "a value that is left out cannot be the root";
  }
  EXPECT_EQ(read(inPlist("<dict/>")).state, platform::ListState::whole);
}

TEST(PropertyListRead, LeavesOutHalfASurrogatePairAndWhatBelongsToIt) {
  for (const std::string half :
       {"\xED\xA0\x80", "\xED\xBF\xBF", "\xED\xA0\xBD\xED\xB8\x80", "&#xD800;", "&#xdfff;",
        "&#55296;", "&#57343;", "&#x0000D800;", "&#xD83D;&#xDE00;", "<![CDATA[\xED\xA0\x80]]>"}) {
    const platform::ListReading reading = read(inPlist(
        "<dict><key>a</key><true/><key>k</key><string>x" + half + "y</string><key>" + half +
        "</key><dict><key>in</key><array><true/></array></dict><key>" + half + "</key><string>" +
        half + "</string><key>l</key><array><string>" + half + "</string><false/></array></dict>"));
    EXPECT_EQ(reading.state, platform::ListState::partial) << half;
    EXPECT_EQ(reading.dictionary, (Dictionary{{"a", true}, {"l", Value::Array{false}}})) << half;
  }
  EXPECT_EQ(read(inPlist("<dict><!-- \xED\xA0\x80 --></dict>")).state, platform::ListState::whole);
  for (const std::string_view other :
       {"\xED\xA0", "\xED\xA0x", "&#xD800", "&#xD800 ;", "&#x110000;", "&#xFFFFFFFFFFD800;", "&#x;",
        "&#;", "&#-55296;", "&#55x;"}) {
    const std::string text(other);
    EXPECT_EQ(read(inPlist("<dict><key>k</key><string>" + text + "</string></dict>")).state,
              platform::ListState::damaged)
        << text;
  }
  const std::string mark = "\xEF\xB7\x90";
  EXPECT_EQ(listIn(inPlist("<dict><key>k</key><string>" + mark + "</string></dict>")),
            (Dictionary{{"k", mark}}))
      << "the character that marks a half must still be read as itself";
  EXPECT_FALSE(listIn(inPlist("<dict><key>k</key><string>&#xD800;</string>")));
  EXPECT_FALSE(listIn(inPlist("<dict><key>&#xD800;</key></dict>")));
}

TEST(PropertyListRead, TakesAnEmptyListOfDeclarations) {
  for (const char* subset : {"[]", "[ \n]", "[<!-- nothing -->]"}) {
    EXPECT_EQ(listIn(std::string("<!DOCTYPE plist ") + subset + "><plist><dict/></plist>"),
              Dictionary())
        << subset;
  }
}

TEST(PropertyListRead, RefusesWhatIsNotAPropertyList) {
  for (const std::string& document : {
           ""s,
           " "s,
           "\0"s,
           "plain text"s,
           "{ a = b; }"s,
           "bplist"s,
           "bplist01"s,
           "<plist>"s,
           "<plist/>"s,
           "<plist></plist>"s,
           "<plist><dict></plist>"s,
           "<plist><dict></dict>"s,
           "<plist><dict/></plist><plist/>"s,
           "<plist><dict/></plist>x"s,
           " <?xml version=\"1.0\"?><plist><dict/></plist>"s,
           "<html><dict/></html>"s,
           "<Plist><dict/></Plist>"s,
           inPlist("<array/>"),
           inPlist("<array><dict/></array>"),
           inPlist("<string>x</string>"),
           inPlist("<true/>"),
           inPlist("<key>k</key>"),
           inPlist("<key>k</key><dict/>"),
           inPlist("<dict/><dict/>"),
           inPlist("<dict/>text"),
           inPlist("text<dict/>"),
           inPlist("<plist><dict/></plist>"),
           inPlist("<unknown/>"),
       }) {
    EXPECT_FALSE(listIn(document)) << document;
  }
}

TEST(PropertyListRead, RefusesDictionariesAndValuesOutOfForm) {
  for (const std::string_view content : {
           "<key>k</key>",
           "<key>k</key><true/><key>l</key>",
           "<key>k</key><key>l</key><true/>",
           "<true/>",
           "<key>k</key><true/><true/>",
           "<key>k</key>text<true/>",
           "text",
           "<key>k</key><array>text</array>",
           "<key>k</key><array><key>l</key></array>",
           "<key>k</key><array><true/>",
           "<key>k</key><unknown/>",
           "<key>k</key><dict><unknown/></dict>",
           "<key>k</key><string>a<true/></string>",
           "<key>k</key><string><string/></string>",
           "<key>k</key><string>x<array/></string>",
           "<key>k</key><string>x<dict/></string>",
           "<key>k<true/></key><true/>",
           "<key>k</key><true><true/></true>",
           "<key>k</key><plist/>",
           "<key>k</key><string>&unknown;</string>",
           "<key>k</key><string>\x01</string>",
           "<key>k</key><string>&#0;</string>",
           "<key>k</key><string>&#xFFFF;</string>",
           "<key>k</key><string>\xFF</string>",
       }) {
    EXPECT_FALSE(listIn(inPlist("<dict>" + std::string(content) + "</dict>"))) << content;
  }
}

TEST(PropertyListRead, TakesTheLaterOfTwoValuesUnderOneKey) {
  const auto read =
      listIn(inPlist("<dict><key>k</key><integer>1</integer><key>l</key><true/><key>k</"
                     "key><string>2</string></dict>"));
  EXPECT_EQ(read, (Dictionary{{"k", "2"}, {"l", true}}));
}

/// The document `text` (ASCII and Latin-1 characters, given as Latin-1) in UTF-16.
std::string inUtf16(std::string_view text, bool bigEndian) {
  std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (const char character : text) {
    if (bigEndian) bytes += '\0';
    bytes += character;
    if (!bigEndian) bytes += '\0';
  }
  return bytes;
}

/// The ASCII document `text` in UTF-16, with `unit` in the place of each "?".
std::string inUtf16With(char16_t unit, std::string_view text, bool isBig) {
  std::string bytes;
  for (const char character : text) {
    const char16_t next = character == '?' ? unit : static_cast<char16_t>(character);
    const char high = static_cast<char>(next >> 8);
    const char low = static_cast<char>(next & 0xFF);
    bytes += isBig ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TEST(PropertyListRead, LeavesOutHalfASurrogatePairInUtf16Too) {
  const std::string list =
      "<plist><dict><key>a</key><true/><key>k</key><string>x?y</string><key>?</key><dict/>"
      "<key>l</key><string>?</string></dict></plist>";
  for (const bool isBig : {true, false}) {
    for (const int half : {0xD800, 0xDBFF, 0xDC00, 0xDFFF}) {
      const std::string bytes = inUtf16With(static_cast<char16_t>(half), list, isBig);
      for (const std::string& document : {bytes, inUtf16With(0xFEFF, "?", isBig) + bytes}) {
        const platform::ListReading reading = read(document);
        EXPECT_EQ(reading.state, platform::ListState::partial) << half;
        EXPECT_EQ(reading.dictionary, (Dictionary{{"a", true}})) << half;
      }
    }
    const std::string whole = inUtf16With(0xD83D, "<plist><dict><key>k</key><string>?", isBig) +
                              inUtf16With(0xDE00, "?</string></dict></plist>", isBig);
    EXPECT_EQ(read(whole).state, platform::ListState::whole);
    EXPECT_EQ(read(whole).dictionary, (Dictionary{{"k", "\xF0\x9F\x98\x80"}}));
    EXPECT_EQ(read(whole + "\n").state, platform::ListState::damaged)
        << "a file that ends in half a unit";
    EXPECT_EQ(read(inUtf16With(0xD83D, "<plist><dict/></plist>?", isBig)).state,
              platform::ListState::damaged)
        << "half a surrogate pair at the end";
  }
}

TEST(PropertyListRead, ReadsCharactersOfEveryLengthInUtf16) {
  const std::string list = "<plist><dict><key>k</key><string>x?y</string></dict></plist>";
  const std::pair<char16_t, std::string> units[] = {
      {0x7F, "\x7F"},           {0x80, "\xC2\x80"},       {0x7FF, "\xDF\xBF"},
      {0x800, "\xE0\xA0\x80"},  {0xD7FF, "\xED\x9F\xBF"}, {0xE000, "\xEE\x80\x80"},
      {0xFFFD, "\xEF\xBF\xBD"},
  };
  const std::pair<std::u16string, std::string> pairs[] = {
      {{0xD800, 0xDC00}, "\xF0\x90\x80\x80"},
      {{0xD83F, 0xDFFF}, "\xF0\x9F\xBF\xBF"},
      {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
  };
  for (const bool isBig : {true, false}) {
    for (const auto& [unit, text] : units) {
      EXPECT_EQ(listIn(inUtf16With(unit, list, isBig)), (Dictionary{{"k", "x" + text + "y"}}));
    }
    for (const auto& [pair, text] : pairs) {
      const std::size_t middle = list.find('?') + 1;
      EXPECT_EQ(listIn(inUtf16With(pair[0], list.substr(0, middle), isBig) +
                       inUtf16With(pair[1], "?" + list.substr(middle), isBig)),
                (Dictionary{{"k", "x" + text + "y"}}));
    }
  }
}

TEST(PropertyListRead, ReadsOtherEncodingsThatTheDocumentNames) {
  const Dictionary expected{{"caf\xC3\xA9", "\xC3\xBF"}};
  const std::string body = inPlist("<dict><key>caf\xE9</key><string>\xFF</string></dict>");
  EXPECT_EQ(listIn("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + body), expected);
  EXPECT_EQ(listIn(inUtf16(body, true)), expected);
  EXPECT_EQ(listIn(inUtf16(body, false)), expected);
  const std::string named = "<?xml version=\"1.0\" encoding=\"UTF-16\"?>" + body;
  EXPECT_EQ(listIn(inUtf16(named, true)), expected);
  EXPECT_FALSE(listIn(body)) << "the bytes are not UTF-8, and no other encoding is named";
  EXPECT_FALSE(listIn("<?xml version=\"1.0\" encoding=\"x-unknown\"?>" + body));
  const std::string utf16 = inUtf16(body, true);
  EXPECT_FALSE(listIn(std::string_view(utf16).substr(0, utf16.size() - 1)));
}

TEST(PropertyListRead, RefusesEveryDeclarationInsideTheDocument) {
  const std::string body = "<plist><dict><key>k</key><string>&e;</string></dict></plist>";
  for (const std::string& document : {
           "<!DOCTYPE plist [<!ENTITY e 'text'>]>" + body,
           "<!DOCTYPE plist [<!ENTITY e SYSTEM 'file:///etc/hostname'>]>" + body,
           "<!DOCTYPE plist SYSTEM 'http://localhost/x.dtd' [<!ENTITY e 'text'>]>" + body,
           "<!DOCTYPE plist SYSTEM 'http://localhost/x.dtd'>" + body,
           "<!DOCTYPE plist [<!ENTITY % p '<!ENTITY e \"x\">'> %p;]>" + body,
           "<!DOCTYPE plist [<!ENTITY e 'unused'>]><plist><dict/></plist>"s,
           "<!DOCTYPE plist [<!ATTLIST dict a CDATA 'default'>]><plist><dict/></plist>"s,
           "<!DOCTYPE plist [<!ELEMENT plist ANY>]><plist><dict/></plist>"s,
       }) {
    EXPECT_FALSE(listIn(document)) << document;
  }
}

TEST(PropertyListRead, RefusesAnEntityBombBeforeItGrows) {
  std::string subset = "<!ENTITY e0 'lol'>";
  for (int i = 1; i < 30; ++i) {
    const std::string inner = "&e" + std::to_string(i - 1) + ";";
    subset += "<!ENTITY e" + std::to_string(i) + " '" + repeated(inner, 10) + "'>";
  }
  const std::string document = "<!DOCTYPE plist [" + subset +
                               "]><plist><dict><key>k</key><string>&e29;</string></dict></plist>";
  const tests::CountedAllocations counted;
  EXPECT_FALSE(listIn(document));
  EXPECT_LT(counted.largest(), std::size_t{1} << 20);
  EXPECT_GT(counted.largest(), 0U) << "the allocations are counted";
}

TEST(PropertyListRead, ReadsNestingUpToTheBoundAndRefusesItBeyond) {
  const auto nested = [](std::size_t arrays) {
    return inPlist("<dict><key>k</key>" + repeated("<array>", arrays) +
                   repeated("</array>", arrays) + "</dict>");
  };
  EXPECT_TRUE(listIn(nested(bounds.levels - 1)));
  EXPECT_FALSE(listIn(nested(bounds.levels)));
  EXPECT_FALSE(listIn(nested(100'000)));
  const auto dictionaries = [](std::size_t levels) {
    return inPlist(repeated("<dict><key>k</key>", levels - 1) + "<dict/>" +
                   repeated("</dict>", levels - 1));
  };
  EXPECT_TRUE(listIn(dictionaries(bounds.levels)));
  EXPECT_FALSE(listIn(dictionaries(bounds.levels + 1)));
  EXPECT_FALSE(listIn(dictionaries(100'000)));
  EXPECT_FALSE(listIn(inPlist(repeated("<array>", 100'000)))) << "nested too deeply, and truncated";
}

TEST(PropertyListRead, ReadsFilesUpToTheBoundAndRefusesThemBeyond) {
  std::string document = inPlist("<dict/>");
  document.append(bounds.bytes - document.size(), '\n');
  EXPECT_TRUE(listIn(document));
  EXPECT_FALSE(listIn(document + "\n"));
  const std::string start = "<plist><dict><key>k</key><string>";
  const std::string end = "</string></dict></plist>";
  const std::string text(bounds.bytes - start.size() - end.size(), 'x');
  EXPECT_EQ(listIn(start + text + end), (Dictionary{{"k", text}}));
}

TEST(PropertyListRead, GivesAnAnswerForEveryTruncation) {
  const std::string document = inPlist(
      "<dict><key>a</key><array><data>AAEC</data><real>1.5</real></array>"
      "<key>b</key><date>2024-01-01T00:00:00Z</date><key>c</key><string>&amp;</string></dict>");
  ASSERT_TRUE(listIn(document));
  for (std::size_t size = 0; size < document.size(); ++size) {
    EXPECT_FALSE(listIn(std::string_view(document).substr(0, size))) << size;
  }
}

TEST(PropertyListRead, ThrowsForEveryFailedAllocationAndLeavesNothingBehind) {
  const std::string document = inPlist(
      "<dict><key>a key that is longer than a small string</key><array><data>AAEC</data>"
      "<string>a text that is longer than a small string</string><dict/></array></dict>");
  const auto expected = listIn(document);
  ASSERT_TRUE(expected);
  EXPECT_GT(tests::failuresThrown([&] { return listIn(document); }, expected), 20);
}

}  // namespace
}  // namespace wenlolib::plist
