// Every named difference between this project's property lists and Core Foundation's, in the
// smallest file that shows it.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "lists/Explanation.h"
#include "lists/Reading.h"
#include "lists/Written.h"
#include "plist/BinaryFile.h"
#include "plist/Bounds.h"

namespace wenlolib::tests::lists {
namespace {

using namespace std::string_literals;
using plist::ascii;
using plist::BinaryFile;
using plist::bytesOf;
using plist::marker;

struct Row {
  std::string name, bytes, ours, theirs;
};

void expectEach(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name + ": " + shown(row.bytes).substr(0, 200));
    EXPECT_EQ(ours(row.bytes).shown(), row.ours);
    EXPECT_EQ(theirs(row.bytes).shown(), row.theirs);
    EXPECT_EQ(explanation(row.bytes), Names{row.name});
  }
}

/// A list that has `element` under the key "k".
std::string xmlWith(const std::string& element) {
  return "<plist><dict><key>k</key>" + element + "</dict></plist>";
}

/// The ASCII text in UTF-16, the higher byte first.
std::string wide(const std::string& text) {
  std::string units;
  for (const char c : text) units += {'\0', c};
  return units;
}

TEST(CoreFoundationLists, DifferInXmlAsAWhole) {
  // The dictionary is a level too, and so is the empty array, which Core Foundation does not count.
  std::string starts, ends;
  for (std::size_t level = 1; level < plist::bounds.levels; ++level) {
    starts += "<array>";
    ends += "</array>";
  }
  expectEach({
      {"a blank file", " \n", "refused", "{}"},
      {"the text form in braces", "{ a = b; }", "refused", "{\"a\": \"b\"}"},
      {"the text form in braces", "a = b;", "refused", "{\"a\": \"b\"}"},
      {"XML that is not well-formed", "<dict/>x", "refused", "{}"},
      {"XML that is not well-formed", xmlWith("<string>\x01</string>"), "refused",
       "{\"k\": \"\\x01\"}"},
      {"XML that is not well-formed", xmlWith("<string>\xEF\xBF\xBE</string>"), "refused",
       "{\"k\": \"\\xef\\xbf\\xbe\"}"},
      {"XML that is not well-formed", "<dict a=1/>", "refused", "{}"},
      {"damage inside another root", "<array>x</array>", "other root", "refused"},
      {"damage inside another root", "<array><x", "other root", "refused"},
      {"more values, or deeper ones, than the bounds allow", xmlWith(starts + "<array/>" + ends),
       "refused", "too much"},
      {"an encoding other than UTF-8", wide("<dict/>"), "{}", "refused"},
      {"an encoding other than UTF-8",
       "<?xml version='1.0' encoding = 'ISO-8859-1'?>" + xmlWith("<string>\xE9</string>"),
       "{\"k\": \"\\xc3\\xa9\"}", "refused"},
      {"a character before UTF-16", "x\0"s + "<\0d\0i\0c\0t\0/\0>\0"s, "refused", "{}"},
      {"a declaration before the root", "<!DOCTYPE plist []><dict/>", "{}", "refused"},
      {"half of a surrogate pair", xmlWith("<string>&#xD800;</string>"), "partial {}", "refused"},
      {"half of a surrogate pair", xmlWith("<string>\xED\xA0\x80</string>"), "partial {}",
       "refused"},
      {"a list inside another", "<plist>" + xmlWith("<true/>") + "</plist>", "refused",
       "{\"k\": true}"},
      {"a key where a value belongs", xmlWith("<key>v</key>"), "refused", "{\"k\": \"v\"}"},
      {"an attribute", "<dict a='>'/>", "{}", "refused"},
      {"a reference or CDATA section between the values", xmlWith("<true/><![CDATA[ ]]>"),
       "{\"k\": true}", "refused"},
      {"a reference or CDATA section between the values", xmlWith("<true/>&#32;"), "{\"k\": true}",
       "refused"},
  });
}

TEST(CoreFoundationLists, DifferInTheElementsOfXml) {
  const std::string escaped = "a reference or CDATA section in a number, date or data";
  const std::string date = "2001-01-01T00:00:00Z", origin = "{\"k\": date 978307200}";
  expectEach({
      {"a comment in a value", xmlWith("<string>a<!-- -->b</string>"), "{\"k\": \"ab\"}",
       "refused"},
      {"a carriage return", xmlWith("<string>\r\n</string>"), "{\"k\": \"\\x0a\"}",
       "{\"k\": \"\\x0d\\x0a\"}"},
      {"a long character reference", xmlWith("<string>&#x000000041;</string>"), "{\"k\": \"A\"}",
       "refused"},
      {escaped, xmlWith("<integer>&#49;</integer>"), "{\"k\": 1}", "refused"},
      {escaped, xmlWith("<date><![CDATA[" + date + "]]></date>"), origin, "refused"},
      {escaped, xmlWith("<data>&#65;AAA</data>"), "{\"k\": data 000000}", "{\"k\": data eb9000}"},
      {"blanks around a number or date", xmlWith("<integer>7 </integer>"), "{\"k\": 7}", "refused"},
      {"blanks around a number or date", xmlWith("<real>7 </real>"), "{\"k\": real 7}", "refused"},
      {"blanks around a number or date", xmlWith("<date> " + date + "</date>"), origin, "refused"},
      {"blanks in a boolean", xmlWith("<true> </true>"), "{\"k\": true}", "refused"},
      {"<data/>", xmlWith("<data/>"), "{\"k\": data }", "refused"},
      {"a NaN with a sign", xmlWith("<real>-nan</real>"), "{\"k\": real nan}", "refused"},
      {"an integer that cannot be represented", xmlWith("<integer>+ 7</integer>"), "partial {}",
       "{\"k\": 7}"},
      {"an integer that cannot be represented", xmlWith("<integer>1.0</integer>"), "partial {}",
       "refused"},
      {"a real that cannot be represented", xmlWith("<real>1e999</real>"), "partial {}",
       "{\"k\": real inf}"},
      {"a real that cannot be represented", xmlWith("<real/>"), "partial {}", "refused"},
      {"a date that does not exist", xmlWith("<date>2023-02-30T00:00:00Z</date>"), "partial {}",
       "{\"k\": date 1677715200}"},
      {"a date that does not exist", xmlWith("<date>2023-13-01T00:00:00Z</date>"), "partial {}",
       "{\"k\": date 1704067200}"},
      {"a date that does not exist", xmlWith("<date>2023-01-01T00:00:60Z</date>"), "partial {}",
       "{\"k\": date 1672531260}"},
      {"a date that does not exist", xmlWith("<date/>"), "partial {}", "refused"},
      {"a year of ten digits or more", xmlWith("<date>10000000000-01-01T00:00:00Z</date>"),
       "{\"k\": date 3.155694578327808e+17}", "{\"k\": date 44497304229859200}"},
      {"broken base64", xmlWith("<data>AAA!</data>"), "partial {}", "{\"k\": data }"},
      {"broken base64", xmlWith("<data>AA</data>"), "partial {}", "{\"k\": data }"},
      {"text in a boolean", xmlWith("<false>x</false>"), "partial {}", "refused"},
  });
}

/// A list that has `object` under the key "k".
BinaryFile binaryWith(const std::string& object) {
  BinaryFile file;
  file.objects = {file.dictionary({1, 2}), ascii("k"), object};
  return file;
}

TEST(CoreFoundationLists, DifferInTheFrameOfTheBinaryForm) {
  const BinaryFile file = binaryWith(marker(0, 9));
  std::string version = file.bytes();
  version[7] = '1';
  BinaryFile narrow;
  narrow.referenceWidth = 1;
  narrow.objects = {marker(0xD, 0)};
  narrow.objects.resize(256, marker(0, 9));
  BinaryFile wideOffsets = file;
  wideOffsets.offsetWidth = 9;
  BinaryFile other;
  other.objects = {other.array({7})};
  plist::Trailer more = file.trailer();
  more.count = 4;
  BinaryFile doubling = file;
  for (std::uint64_t number = 2; number < 20; ++number) {
    doubling.objects.back() = doubling.array({number + 1, number + 1});
    doubling.objects.push_back(marker(0, 9));
  }
  const std::string read = "{\"k\": true}";
  expectEach({
      {"more values, or deeper ones, than the bounds allow", doubling.bytes(), "refused",
       "too much"},
      {"another version of the binary form", version, "refused", read},
      {"offsets or references of more than eight bytes", wideOffsets.bytes(), "refused", read},
      {"a loose frame", file.body() + file.table() + "x" + file.trailer().bytes(), read, "refused"},
      {"a loose frame", file.body() + file.table() + bytesOf(~0U, 4) + more.bytes(), read,
       "refused"},
      {"a loose frame", narrow.bytes(), "{}", "refused"},
      {"damage inside another root", other.bytes(), "other root", "refused"},
  });
}

TEST(CoreFoundationLists, DifferInTheObjectsOfTheBinaryForm) {
  const auto with = [](const std::string& object) { return binaryWith(object).bytes(); };
  BinaryFile twice;
  twice.objects = {twice.dictionary({1, 1, 2, 3}), ascii("k"), marker(0, 8), marker(0, 9)};
  BinaryFile key = binaryWith(marker(0, 9));
  key.objects[1] = marker(0xA, 0);
  expectEach({
      {"a set", with(marker(0xC, 0)), "refused", "partial {}"},
      {"a key twice in the binary form", twice.bytes(), "{\"k\": true}", "{\"k\": false}"},
      {"an array or a dictionary as a key", key.bytes(), "partial {}", "refused"},
      {"an integer of 16 bytes", with(marker(1, 4) + bytesOf(1, 8) + bytesOf(5, 8)), "partial {}",
       "{\"k\": 5}"},
      {"an integer of 16 bytes", with(marker(1, 4) + bytesOf(~0ULL, 8) + bytesOf(~0ULL, 8)),
       "{\"k\": -1}", "{\"k\": 18446744073709551615}"},
      {"a UID of more than four bytes", with(marker(8, 4) + bytesOf(1ULL << 32U, 5)),
       "{\"k\": {\"CF$UID\": 4294967296}}", "refused"},
      {"an unknown simple object", with(marker(0, 15)), "partial {}", "refused"},
      {"an integer of 32 bytes or more", with(marker(1, 5) + bytesOf(7, 32)), "partial {}",
       "refused"},
      {"a real of another width", with(marker(2, 1) + bytesOf(0, 2)), "partial {}", "refused"},
      {"a date of another width", with(marker(3, 2) + bytesOf(0, 4)), "partial {}", "refused"},
      {"an empty text in UTF-16", with(marker(6, 0)), "{\"k\": \"\"}", "refused"},
      {"a byte beyond ASCII", with(ascii("\x80")), "partial {}", "{\"k\": \"\\xc2\\x80\"}"},
  });
}

TEST(CoreFoundationLists, DifferInWhatIsWritten) {
  const auto explained = [](const Value& value, Writer writer) {
    return writtenExplanation(Dictionary{{"k", value}}, writer);
  };
  const Value fraction = Instant(Seconds(0.5));
  EXPECT_EQ(explained(fraction, Writer::ours), Names{"written: the fraction of a second in XML"});
  EXPECT_EQ(explained(fraction, Writer::theirsInXml),
            Names{"written: the fraction of a second in XML"});
  EXPECT_EQ(explained(fraction, Writer::theirsInBinary), Names());
  EXPECT_EQ(written({{"k", "\x01"}}, Writer::ours), "");
  EXPECT_EQ(explained("\x01", Writer::ours), Names{"written: a control character in XML"});
  EXPECT_EQ(explained("\x01", Writer::theirsInXml), Names{"written: a control character in XML"});
  EXPECT_EQ(explained("\r", Writer::theirsInXml), Names{"written: a carriage return in XML"});
  EXPECT_EQ(explained("\r", Writer::ours), Names());
  EXPECT_EQ(explained(-0.0, Writer::theirsInXml), Names{"written: the sign of zero in XML"});
  EXPECT_EQ(explained(-0.0, Writer::ours), Names());
  const Value zeros = Value::Array{0.0, -0.0};
  EXPECT_EQ(explained(zeros, Writer::theirsInBinary), Names());
}

TEST(CoreFoundationLists, AreExplainedInTheDocumentation) {
  std::ifstream file(WENLOLIB_DOCS "/macos.md");
  const std::string page((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  for (const auto& names : {allNames(), allWrittenNames()}) {
    EXPECT_FALSE(names.empty());
    for (const std::string& name : names) {
      EXPECT_NE(page.find("| " + name + " |"), std::string::npos) << name;
    }
  }
}

}  // namespace
}  // namespace wenlolib::tests::lists
