#include "documents/DocumentText.h"

#include <gtest/gtest.h>

#include <string>

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

TEST(FoldedDocument, SaysHowMuchOfALongElementIsLeftOut) {
  const std::string document = "<A><P>" + std::string(5000, 'F') + "</P></A>";
  const std::string folded = tools::foldDocument(document, 80);
  EXPECT_NE(folded.find("  (4,495 bytes more)\n"), std::string::npos) << folded;
  EXPECT_LT(folded.size(), 1000U);
}

}  // namespace
}  // namespace wenlolib::tests
