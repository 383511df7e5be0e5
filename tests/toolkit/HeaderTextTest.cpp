#include "toolkit/HeaderText.h"

#include <gtest/gtest.h>

#include <string>

#include "base/Utf8.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

Text fit(const Text& text) {
  return CommonTooWenlolib::convertStrToHeaderStr(text);
}

TEST(HeaderText, KeepsWhatEverySerialiserLeavesAlone) {
  for (const std::string text : {"", "MFG:Orvan;MDL:QX 200;", "\"it's\" ]] \t\n", "Größe 印刷 𝄞",
                                 "\x7F\xC2\x80", "\xEF\xBF\xBD\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(fit(text), text);
  }
  EXPECT_EQ(fit(std::nullopt), std::nullopt);
}

TEST(HeaderText, ReplacesMarkupAndWhatXmlDoesNotAllow) {
  EXPECT_EQ(fit("<b>&amp;]]>"), "_b__amp;]]_");
  EXPECT_EQ(fit("a\r\nb\x01\x1F"), "a_\nb__");
  EXPECT_EQ(fit(std::string("a\0b", 3)), "a_b");
  EXPECT_EQ(fit("\xEF\xBF\xBE|\xEF\xBF\xBF"), "_|_");
}

TEST(HeaderText, ReplacesEveryByteThatIsNotUtf8) {
  EXPECT_EQ(fit("\xFF\x80z"), "__z");
  EXPECT_EQ(fit("\xC0\xAF"), "__");            // overlong
  EXPECT_EQ(fit("\xED\xA0\x80"), "___");       // half a surrogate pair
  EXPECT_EQ(fit("\xF4\x90\x80\x80"), "____");  // above U+10FFFF
  EXPECT_EQ(fit("\xE5\x8D"), "__");            // cut short
}

struct Cut {
  std::size_t letters;  // in front of the end
  std::string end;
  std::string keptEnd;
};

TEST(HeaderText, IsCutAtACharacter) {
  const Cut cuts[] = {{1023, "a", ""},   {1022, "ö", ""},     {1021, "öb", "ö"}, {1020, "𝄞b", ""},
                      {1019, "𝄞b", "𝄞"}, {1021, "\xC3", "_"}, {1022, "<<", "_"}};
  for (const Cut& cut : cuts) {
    std::string text(cut.letters, 'a');
    EXPECT_EQ(fit(text + cut.end), text + cut.keptEnd) << cut.letters << cut.end;
  }
}

TEST(HeaderText, OfAnyByteIsFitAndStaysAsItIs) {
  std::string bytes;
  for (int i = 0; i < 6; ++i) {
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte * 37 + i * 11);
  }
  const Text once = fit(bytes);
  ASSERT_TRUE(once);
  EXPECT_TRUE(isUtf8(*once));
  EXPECT_LE(once->size(), longestHeaderText);
  EXPECT_EQ(once->find_first_of("<>&\r"), once->npos);
  EXPECT_EQ(fit(once), once);
}

}  // namespace
}  // namespace wenlolib::tests
