#include "platform/apple/Nesting.h"

#include <gtest/gtest.h>

#include <string>

namespace wenlolib::tests {
namespace {

using platform::apple::binaryNestsAtMost;
using platform::apple::nestsAtMost;
using platform::apple::xmlNestsAtMost;

std::string repeated(std::string_view text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

/// UTF-16 behind a byte order mark, with the high byte of each unit first or last.
std::string wide(std::u16string_view text, bool highFirst = true) {
  std::string bytes;
  for (const char16_t unit : std::u16string(u"\uFEFF") + std::u16string(text)) {
    const auto high = static_cast<char>(unit >> 8);
    const auto low = static_cast<char>(unit & 0xFF);
    bytes += {highFirst ? high : low, highFirst ? low : high};
  }
  return bytes;
}

std::string declaring(std::string_view declaration) {
  return "<?xml version=\"1.0\" " + std::string(declaration) + "?><a/>";
}

TEST(XmlNesting, CountsWhatIsOpen) {
  struct Case {
    const char* text;
    std::size_t levels;
  };
  for (const Case& each : {
           Case{"<a></a><a></a>", 1},
           {" \t\r\n<a></a>", 1},
           {"<a><b></b></a>", 2},
           {"<a><b/><b /></a>", 1},
           {"<a><b x=\"\"/><b/></a>", 1},
           {"<a><b x=\"/\"></b></a>", 2},
           {"<a><b / ></b></a>", 2},
           {"<a x='\"' y=\"'\"><b></b></a>", 2},
           {"<!DOCTYPE plist ><a></a><a></a>", 1},
           {"<!-- </a></a> --><a><b></b></a>", 2},
           {"<a><!-- </a></a> --><b><!-- ></c> - > -> --></b></a>", 2},
           {"<a><!----><!-- --><b></b></a>", 2},
           {"<a><![CDATA[</a></a>]]><b></b></a>", 2},
           {"<a><![CDATA[]]]]><b></b></a>", 2},
           {"<a><?x </a></a> ?><b></b></a>", 2},
           {"<a>></a>]]>--><a></a>", 1},
           {"<a><b>", 2},
       }) {
    EXPECT_TRUE(xmlNestsAtMost(each.levels, each.text)) << each.text;
    EXPECT_FALSE(xmlNestsAtMost(each.levels - 1, each.text)) << each.text;
  }
}

TEST(XmlNesting, RefusesWhatReadersMayTakeForDifferentMarkup) {
  struct Case {
    const char* refused;
    const char* accepted;
  };
  for (const Case& each : {
           Case{"", "<a/>"},
           {"x<a/>", " <a/>"},
           {"<a", "<a>"},
           {"<a></a><", "<a></a>"},
           {"<a b=\"<\"/>", "<a b=\"&lt;\"/>"},
           {"<a b=\">\"/>", "<a b=\"&gt;\"/>"},
           {"<a b='\">'/>", "<a b='\"'/>"},
           {"<a b=\"/>", "<a b=\"\"/>"},
           {"<></>", "<a></a>"},
           {"< a></a>", "<a ></a >"},
           {"<1/>", "<a1/>"},
           {"<\xC3\xA9/>", "<a\xC3\xA9/>"},
           {"<a></></a>", "<a></a>"},
           {"<a></ a>", "<a></a>"},
           {"</a>", "<a/>"},
           {"<a/></a>", "<a></a>"},
           {"<a></a></a><a>", "<a></a><a></a>"},
           {"<!-->-->", "<!-- > -->"},
           {"<!--->-->", "<!-- -> -->"},
           {"<!-- -- -->", "<!-- - - -->"},
           {"<!-- --->", "<!-- - -->"},
           {"<!-- --", "<!-- -->"},
           {"<!-- ->", "<!-- -->"},
           {"<!- -->", "<!-- -->"},
           {"<!DOCTYPE a", "<!DOCTYPE a>"},
           {"<!DOCTYPE a <b>", "<!DOCTYPE a>"},
           {"<!DOCTYPE a []>", "<!DOCTYPE a>"},
           {"<!DOCTYPE a PUBLIC \">\">", "<!DOCTYPE a PUBLIC \"\">"},
           {"<!doctype a>", "<!DOCTYPE a>"},
           {"<!ENTITY a \"b\">", "<!DOCTYPE a \"b\">"},
           {"<![CDATA[ ]]", "<![CDATA[ ]]>"},
           {"<![cdata[ ]]>", "<![CDATA[ ]]>"},
           {"<![IGNORE[ ]]>", "<![CDATA[ ]]>"},
           {"<?>?>", "<?a >?>"},
           {"<?a >", "<?a ?>"},
           {"<?", "<?b?>"},
       }) {
    EXPECT_FALSE(xmlNestsAtMost(1000, each.refused)) << each.refused;
    EXPECT_TRUE(xmlNestsAtMost(1000, each.accepted)) << each.accepted;
  }
}

TEST(XmlNesting, TakesNoOddCharactersForMarkup) {
  EXPECT_FALSE(xmlNestsAtMost(9, std::string("<a>\0</a>", 8)));
  EXPECT_TRUE(xmlNestsAtMost(9, "<a>\x01\x7F\x80\xFF</a>"));
  EXPECT_TRUE(xmlNestsAtMost(9, "\xEF\xBB\xBF<a/>"));
  EXPECT_FALSE(xmlNestsAtMost(9, "\xEF\xBB\xBF\xEF\xBB\xBF<a/>"));
  EXPECT_FALSE(xmlNestsAtMost(9, "\xEF\xBB<a/>"));
}

TEST(XmlNesting, SeesThroughUtf16) {
  for (const bool highFirst : {true, false}) {
    const auto nests = [&](std::size_t levels, std::u16string_view text) {
      return xmlNestsAtMost(levels, wide(text, highFirst));
    };
    EXPECT_TRUE(nests(2, u"\r\n<a><b></b></a>"));
    EXPECT_FALSE(nests(1, u"\r\n<a><b></b></a>"));
    EXPECT_TRUE(nests(1, u"<a>" + std::u16string(2000, u'\u4F3C') + u"</a>"));
    EXPECT_TRUE(nests(1, u"<a>" + std::u16string(2000, u'\u3C61') + u"\u3E3E\u013C\u00BC</a>"));
    EXPECT_FALSE(nests(9, u"<\u0161></a>"));
    EXPECT_FALSE(nests(9, std::u16string_view(u"<a>\0</a>", 8)));
    EXPECT_FALSE(nests(9, u"\uFEFF<a/>"));
    EXPECT_FALSE(nests(9, u""));
    EXPECT_FALSE(xmlNestsAtMost(9, wide(u"<a/>", highFirst) + ' '));
    EXPECT_FALSE(xmlNestsAtMost(9, wide(u"<a/>", highFirst).substr(2))) << "no mark";
  }
  EXPECT_FALSE(xmlNestsAtMost(9, std::string("\xFF\xFE\0\0<\0\0\0a\0\0\0/\0\0\0>\0\0\0", 20)));
  EXPECT_FALSE(xmlNestsAtMost(9, std::string("\0\0\xFE\xFF\0\0\0<\0\0\0a\0\0\0/\0\0\0>", 20)));
}

TEST(XmlNesting, TrustsEncodingsWithAsciiInThem) {
  for (const char* name :
       {"UTF-8", "utf-8", "Utf-8", "US-ASCII", "ascii", "ISO-8859-1", "iso-8859-9", "iso-8859-16",
        "windows-1250", "Windows-1258", "macintosh"}) {
    EXPECT_TRUE(xmlNestsAtMost(9, declaring("encoding=\"" + std::string(name) + "\""))) << name;
    EXPECT_TRUE(xmlNestsAtMost(9, declaring("encoding='" + std::string(name) + "'"))) << name;
  }
  for (const char* name : {"",           "UTF-7",        "UTF-16",       "UTF-16LE",
                           "UTF-32",     "utf8",         "UTF-8 ",       " UTF-8",
                           "UTF-80",     "iso-8859-0",   "iso-8859-17",  "iso-8859-01",
                           "iso-8859-",  "windows-1249", "windows-1259", "windows-12500",
                           "macintosh2", "Shift_JIS",    "ISO-2022-JP",  "IBM037",
                           "HZ-GB-2312"}) {
    EXPECT_FALSE(xmlNestsAtMost(9, declaring("encoding=\"" + std::string(name) + "\""))) << name;
  }
}

TEST(XmlNesting, ReadsAnEncodingInItsPlainFormOnly) {
  EXPECT_TRUE(xmlNestsAtMost(9, declaring("")));
  EXPECT_TRUE(xmlNestsAtMost(9, declaring("encoding=\"UTF-8\" standalone='no'")));
  for (const char* declaration :
       {"encoding = 'UTF-8'", "encoding= 'UTF-8'", "encoding ='UTF-8'", "encoding=UTF-8",
        "encoding=|UTF-8|", "encoding:'UTF-8'", "encoding", "encoding=", "encoding='",
        "encoding='UTF-8", "encoding='UTF-8\"", "encoding='UTF-8' encoding='UTF-8'",
        "encoding='UTF-8' encoding='UTF-7'", "encoding='UTF-8' x='encoding'"}) {
    EXPECT_FALSE(xmlNestsAtMost(9, declaring(declaration))) << declaration;
  }
  EXPECT_FALSE(xmlNestsAtMost(9, "<!-- --> <?xml encoding='UTF-7'?><a/>"));
  EXPECT_TRUE(xmlNestsAtMost(9, "<a>encoding='UTF-7'</a>"));
}

TEST(XmlNesting, BelievesTheByteOrderMark) {
  EXPECT_TRUE(xmlNestsAtMost(9, wide(u"<?xml encoding='UTF-16'?><a/>")));
  EXPECT_TRUE(xmlNestsAtMost(9, wide(u"<?xml version='1.0'?><a/>", false)));
  EXPECT_FALSE(xmlNestsAtMost(9, wide(u"<?xml encoding='UTF-8'?><a/>")));
  EXPECT_FALSE(xmlNestsAtMost(9, wide(u"<?xml encoding='ISO-8859-1'?><a/>")));
  EXPECT_TRUE(xmlNestsAtMost(9, "\xEF\xBB\xBF" + declaring("encoding='UTF-8'")));
  EXPECT_FALSE(xmlNestsAtMost(9, "\xEF\xBB\xBF" + declaring("encoding='UTF-16'")));
}

TEST(Nesting, IsNotHidden) {
  const std::string start = "<plist version=\"1.0\"><dict><key>k</key>";
  const std::string arrays = repeated("<array>", 100'000);
  EXPECT_FALSE(nestsAtMost(512, start + arrays));
  EXPECT_FALSE(nestsAtMost(512, start + "<!--->" + arrays));
  EXPECT_FALSE(nestsAtMost(512, start + "<!--->" + arrays + "-->"));
  EXPECT_FALSE(nestsAtMost(512, "<plist version=\"<!--\"><dict><key>k</key>" + arrays));
  EXPECT_FALSE(nestsAtMost(512, "<!DOCTYPE plist <!-- >" + start + arrays));
  const std::string zero(1, '\0');
  EXPECT_FALSE(nestsAtMost(512, repeated("<array><!---" + zero + "-></-->", 1000)));
  std::u16string comments;
  for (int i = 0; i < 1000; ++i) comments += u"<array><!--\u2D2D\u3E41\u3C2F-->";
  EXPECT_FALSE(nestsAtMost(512, wide(comments)));
  EXPECT_FALSE(nestsAtMost(512, wide(comments, false)));
}

TEST(Nesting, AllowsWhatIsSound) {
  const std::string body =
      "<plist version=\"1.0\">\n<dict>\n\t<!-- a note - of some kind -->\n\t<key>a &amp; b</key>\n"
      "\t<string><![CDATA[<b>]]> and "
      "more</string>\n\t<key>none</key>\n\t<array/>\n\t<key>no</key>\n"
      "\t<false/>\n\t<key>data</key>\n\t<data>\n\tAAEC\n\t</data>\n</dict>\n</plist>\n";
  const std::string type =
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
      "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";
  const auto declared = [](const std::string& name) {
    return "<?xml version=\"1.0\" encoding=\"" + name + "\"?>\n";
  };
  EXPECT_TRUE(nestsAtMost(1, body));
  EXPECT_TRUE(nestsAtMost(1, type + body));
  for (const char* name : {"UTF-8", "ISO-8859-1", "US-ASCII"}) {
    EXPECT_TRUE(nestsAtMost(1, declared(name) + type + body)) << name;
  }
  const std::string file = declared("UTF-16") + type + body;
  const std::u16string units(file.begin(), file.end());
  EXPECT_TRUE(nestsAtMost(1, wide(units)));
  EXPECT_TRUE(nestsAtMost(1, wide(units, false)));
}

TEST(Nesting, CountsEveryContainerOfTheOldForm) {
  struct Case {
    const char* text;
    std::size_t containers;
  };
  for (const Case& each : {
           Case{"{ a = b; }", 1},
           {"( a, (b), {c = d;} )", 3},
           {"// {\n( \"(\" )", 3},
           {"a = (b); c = { d = <0fbd77 1c>; };", 2},
       }) {
    EXPECT_TRUE(nestsAtMost(each.containers, each.text)) << each.text;
    EXPECT_FALSE(nestsAtMost(each.containers - 1, each.text)) << each.text;
  }
  EXPECT_FALSE(nestsAtMost(512, repeated("(", 513) + repeated(")", 513)));
}

TEST(Nesting, TakesNothingForTheOldFormThatMayBeReadAsXml) {
  for (const std::string_view text :
       {std::string_view("a <array>"), std::string_view("{ <dict"), std::string_view("{\0 }", 4),
        std::string_view("<?xml encoding='UTF-7'?>+ADw-dict+AD4-")}) {
    EXPECT_FALSE(nestsAtMost(512, text)) << text;
  }
}

TEST(Nesting, KnowsNoFormThatOnlyBeginsLikeTheBinaryOne) {
  EXPECT_FALSE(nestsAtMost(9, "bplist"));
  EXPECT_FALSE(nestsAtMost(9, "bplist00"));
}

TEST(Nesting, AllowsTheLevelsThatItSays) {
  const auto list = [](int arrays) {
    return "<plist version=\"1.0\">" + repeated("<array>", arrays) + "<string>x</string>" +
           repeated("</array>", arrays) + "</plist>";
  };
  EXPECT_TRUE(nestsAtMost(512, list(512)));
  EXPECT_FALSE(nestsAtMost(512, list(513)));
}

/// A binary list of objects given in their own bytes; references and offsets take two bytes.
std::string binary(const std::vector<std::string>& objects, char top = 0) {
  std::string file = "bplist00";
  std::string table;
  for (const std::string& object : objects) {
    table += {static_cast<char>(file.size() >> 8), static_cast<char>(file.size())};
    file += object;
  }
  const std::size_t at = file.size();
  const auto count = static_cast<std::uint16_t>(objects.size());
  file += table + std::string(6, '\0') + "\x02\x02" + std::string(6, '\0');
  file += {static_cast<char>(count >> 8), static_cast<char>(count)};
  file += std::string(7, '\0') + top + std::string(6, '\0');
  return file + std::string{static_cast<char>(at >> 8), static_cast<char>(at)};
}

std::string arrayOf(std::initializer_list<int> references, int kind = 0xA0) {
  std::string object(1, static_cast<char>(kind + static_cast<int>(references.size())));
  for (const int reference : references) {
    object += {static_cast<char>(reference >> 8), static_cast<char>(reference)};
  }
  return object;
}

const std::string leaf = "\x51x";

TEST(BinaryNesting, CountsWhatIsInsideEachOther) {
  EXPECT_TRUE(binaryNestsAtMost(0, binary({leaf})));
  EXPECT_TRUE(binaryNestsAtMost(2, binary({arrayOf({1, 2}), leaf, arrayOf({1})})));
  EXPECT_FALSE(binaryNestsAtMost(1, binary({arrayOf({1, 2}), leaf, arrayOf({1})})));
  // A dictionary with one entry: a key and a value.
  const std::string dictionary = "\xD1" + arrayOf({1, 2}).substr(1);
  EXPECT_TRUE(binaryNestsAtMost(2, binary({dictionary, leaf, arrayOf({1})})));
  EXPECT_FALSE(binaryNestsAtMost(1, binary({dictionary, leaf, arrayOf({1})})));
  EXPECT_TRUE(binaryNestsAtMost(1, binary({arrayOf({1}), leaf, arrayOf({0})})));
}

TEST(BinaryNesting, CountsAnObjectThatIsSharedAtItsDeepest) {
  // 0 holds 3 itself, and once more two levels further down.
  const std::vector<std::string> objects = {arrayOf({3, 1}), arrayOf({2}), arrayOf({3}),
                                            arrayOf({4}), leaf};
  EXPECT_TRUE(binaryNestsAtMost(4, binary(objects)));
  EXPECT_FALSE(binaryNestsAtMost(3, binary(objects)));
}

TEST(BinaryNesting, EndsWhereObjectsHoldThemselves) {
  EXPECT_FALSE(binaryNestsAtMost(512, binary({arrayOf({0})})));
  EXPECT_FALSE(binaryNestsAtMost(512, binary({arrayOf({1}), arrayOf({0})})));
}

TEST(BinaryNesting, AllowsNoMoreReferencesThanTheFileHasRoomFor) {
  // The top holds a number of arrays that are all the same bytes: 256 references to one leaf.
  constexpr int leafNumber = 13;
  std::string array = std::string("\xAF\x11\x01\0", 4);
  for (int i = 0; i < 256; ++i) array += {'\0', leafNumber};
  const auto fileWith = [&](std::initializer_list<int> arrays) {
    std::vector<std::string> objects(leafNumber + 1);
    objects[0] = arrayOf(arrays);
    objects[leafNumber - 1] = array;  // the empty ones before it lie at the same place
    objects[leafNumber] = leaf;
    return binary(objects);
  };
  EXPECT_TRUE(binaryNestsAtMost(2, fileWith({1, 2})));
  EXPECT_FALSE(binaryNestsAtMost(2, fileWith({1, 2, 3, 4, 5, 6, 7, 8, 9, 10})));
}

TEST(BinaryNesting, AnswersForAnyDamage) {
  const std::string sound = binary({arrayOf({1, 2}), leaf, arrayOf({1})});
  for (std::size_t length = 0; length < sound.size(); ++length) {
    EXPECT_FALSE(binaryNestsAtMost(0, sound.substr(0, length))) << length;
  }
  for (std::size_t at = 0; at < sound.size(); ++at) {
    for (const int bits : {1, 0x80, 0xFF}) {
      std::string damaged = sound;
      damaged[at] = static_cast<char>(damaged[at] ^ bits);
      static_cast<void>(nestsAtMost(512, damaged));
    }
  }
}

}  // namespace
}  // namespace wenlolib::tests
