#include "reading/DateText.h"

#include <gtest/gtest.h>

namespace wenlolib {
namespace {

TEST(MomentOf, DateTexts) {
  EXPECT_EQ(momentOf("1970-01-01T00:00:00+00:00"), 0);
  EXPECT_EQ(momentOf("2024-03-15T09:05:07+09:00"), 1710461107);
  EXPECT_EQ(momentOf("2024-03-15T09:05:07+0900"), 1710461107);
  EXPECT_EQ(momentOf("2024-11-03T21:40:00-03:30"), 1730682600);
  EXPECT_EQ(momentOf("2024-02-29T00:00:00+00:00"), 1709164800);
  EXPECT_EQ(momentOf("9999-12-31T23:59:59+00:00"), 253402300799);
  EXPECT_EQ(momentOf("10000-01-01T00:00:00+00:00"), std::nullopt);
}

TEST(MomentOf, TextThatIsNotADateIsNothing) {
  for (const char* text :
       {"", "yesterday", "2024-03-15", "2024-03-15T09:05:07", "2023-02-29T00:00:00+00:00",
        "2024-13-01T00:00:00+00:00", "2024-03-15T24:00:00+00:00", "2024-03-15T09:60:07+00:00",
        "2024-03-15T09:05:61+00:00", "2024-03-15T09:05:07+09:60", "2024-03-15T-9:05:07+09:00",
        "2024-03-15T09:05:07+24:00", "2024-03-15T09:05:07+09:00 ", "2024-3-15T09:05:07+09:00",
        " 2024-03-15T09:05:07+09:00", "2024-03-15 09:05:07+09:00",
        "99999999999-01-01T00:00:00+00:00", "2024-03-15T09:05:07+9:00"}) {
    EXPECT_EQ(momentOf(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace wenlolib
