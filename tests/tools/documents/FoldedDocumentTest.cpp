#include "documents/DocumentText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace wenlolib::tests {
namespace {

TEST(FoldedDocument, HoldsEveryByteWithinItsWidth) {
  const std::string document =
      "<A SUM=\"0\"><V></V><D>" + std::string(300, 'x') + "</D><P>ä€ä€ä€ä€ä€ä€ä€ä€ä€ä€</P></A>";
  std::string joined;
  const std::string folded = tools::foldDocument(document, 20);
  for (std::size_t start = 0; start < folded.size();) {
    const std::size_t end = folded.find('\n', start);
    const std::string line = folded.substr(start, end - start);
    EXPECT_EQ(line.substr(0, 2), "  ");
    EXPECT_LE(line.size(), 20U);
    joined += line.substr(2);
    start = end + 1;
  }
  EXPECT_EQ(joined, document);
  EXPECT_NE(folded.find("  <V></V>\n"), std::string::npos);
}

TEST(FoldedDocument, MeasuresWhatIsSpelledOutAsItIsShown) {
  const std::string_view shown = "\\u{202E}";
  std::string value;
  for (int i = 0; i < 5; ++i) value += "\u202E";
  // Room for two of them, to the column; without the last column for one.
  for (const std::size_t room : {2 * shown.size(), 2 * shown.size() - 1}) {
    const std::size_t each = room / shown.size();
    std::string expected;
    for (std::size_t left = 5; left > 0; left -= std::min(each, left)) {
      expected += "  ";
      for (std::size_t i = 0; i < std::min(each, left); ++i) expected += shown;
      expected += '\n';
    }
    EXPECT_EQ(tools::foldDocument(value, room + 2), expected) << room;
  }
  EXPECT_EQ(tools::foldDocument("<S>a\nb\tc\x7F\u200B</S>", 80),
            "  <S>a\\nb\\tc\\x7F\\u{200B}</S>\n");
}

TEST(FoldedDocument, CutsALongElementBetweenItsCharacters) {
  std::string value;
  for (int i = 0; i < 1000; ++i) value += "\u200B";
  const std::string folded = tools::foldDocument(value, 80);
  EXPECT_EQ(folded.find("\\x"), folded.npos) << folded;
  EXPECT_NE(folded.find("\\u{200B}\n  (2,490 bytes more)\n"), folded.npos) << folded;
  EXPECT_EQ(tools::foldDocument(std::string(2048, 'x'), 80).find("more"), folded.npos);
  EXPECT_NE(tools::foldDocument(std::string(2049, 'x'), 80).find("(1,537 bytes more)"),
            folded.npos);
}

TEST(FoldedDocument, SaysHowMuchOfALongElementIsLeftOut) {
  const std::string document = "<A><P>" + std::string(5000, 'F') + "</P></A>";
  const std::string folded = tools::foldDocument(document, 80);
  EXPECT_NE(folded.find("  (4,495 bytes more)\n"), std::string::npos) << folded;
  EXPECT_LT(folded.size(), 1000U);
}

}  // namespace
}  // namespace wenlolib::tests
