#include "receiver/Contents.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ReferenceCrypto.h"

namespace wenlolib::tests {
namespace {

using platform::DigitRun;
using receiver::decodeDigits;
using receiver::leadingDigits;
using receiver::longestRunAfterTag;

TEST(ReceiverDigits, EveryPairOfBytes) {
  int pairs = 0;
  for (int high = 0; high < 256; ++high) {
    for (int low = 0; low < 256; ++low) {
      const std::string text = {static_cast<char>(high), static_cast<char>(low)};
      const std::string_view digits = "0123456789ABCDEF";
      const bool valid = digits.find(text[0]) != digits.npos && digits.find(text[1]) != digits.npos;
      char byte = 0;
      const std::size_t length = decodeDigits(text, &byte);
      EXPECT_EQ(length, leadingDigits(text));
      EXPECT_EQ(length == 2, valid) << high << ' ' << low;
      if (!valid) continue;
      EXPECT_EQ(std::string(1, byte), fromHex(text));
      ++pairs;
    }
  }
  EXPECT_EQ(pairs, 256);
}

TEST(ReceiverDigits, TheFirstThatIsNotADigit) {
  for (const std::size_t length : {0U, 1U, 2U, 7U, 64U, 1001U}) {
    std::string text(length, 'C');
    std::string bytes(length / 2, '\0');
    EXPECT_EQ(decodeDigits(text, bytes.data()), length);
    EXPECT_EQ(bytes, std::string(length / 2, '\xCC'));
    for (std::size_t i = 0; i < length; ++i) {
      text[i] = 'c';
      EXPECT_EQ(decodeDigits(text, bytes.data()), i);
      text[i] = 'C';
    }
  }
}

TEST(ReceiverDigits, TheLongestRunAfterATag) {
  struct Case {
    std::string text;
    std::size_t offset, length;
  };
  for (const auto& [text, offset, length] : std::vector<Case>{{"", 0, 0},
                                                              {"AAAA", 4, 0},
                                                              {">", 1, 0},
                                                              {">A", 1, 1},
                                                              {"<a>12</a><b>3456</b>789", 12, 4},
                                                              {">12>12", 1, 2},
                                                              {">>>>F", 4, 1},
                                                              {">x123456>1", 9, 1}}) {
    const DigitRun run = longestRunAfterTag(text);
    EXPECT_EQ(run.offset, offset) << text;
    EXPECT_EQ(run.length, length) << text;
  }
}

}  // namespace
}  // namespace wenlolib::tests
