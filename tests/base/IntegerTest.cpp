#include "base/Integer.h"

#include <gtest/gtest.h>

#include <limits>

namespace wenlolib::tests {
namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

TEST(LeadingInteger, ReadsBlanksSignAndDigitsAndStopsAtTheFirstOtherCharacter) {
  const struct {
    const char* text;
    std::int32_t value;
  } table[] = {
      {"", 0},
      {"abc", 0},
      {"7", 7},
      {"0", 0},
      {"007", 7},
      {"42b3", 42},
      {" 5", 5},
      {"\t\n\v\f\r 5", 5},
      {"+5", 5},
      {"-5", -5},
      {" -12x", -12},
      {"--5", 0},
      {"+-5", 0},
      {"- 5", 0},
      {"5 6", 5},
      {"1.5", 1},
      {"0x10", 0},
      {"1e3", 1},
      {"\xC2\xA0"
       "5",
       0},
      {"\xD9\xA3", 0},
  };
  for (const auto& row : table) EXPECT_EQ(leadingInteger(row.text), row.value) << row.text;
}

TEST(LeadingInteger, SaturatesAtThe32BitLimits) {
  const struct {
    const char* text;
    std::int32_t value;
  } table[] = {
      {"2147483646", highest - 1}, {"2147483647", highest},
      {"2147483648", highest},     {"99999999999999999999999999999999", highest},
      {"-2147483647", lowest + 1}, {"-2147483648", lowest},
      {"-2147483649", lowest},     {"-99999999999999999999999999999999", lowest},
  };
  for (const auto& row : table) EXPECT_EQ(leadingInteger(row.text), row.value) << row.text;
}

TEST(LeadingInteger, StopsAtAnEmbeddedNul) {
  EXPECT_EQ(leadingInteger(std::string_view("1\0002", 3)), 1);
}

TEST(Saturated, GivesTheNearest32BitInteger) {
  EXPECT_EQ(saturated(0), 0);
  EXPECT_EQ(saturated(-1), -1);
  EXPECT_EQ(saturated(std::int64_t{highest}), highest);
  EXPECT_EQ(saturated(std::int64_t{highest} + 1), highest);
  EXPECT_EQ(saturated(std::int64_t{lowest}), lowest);
  EXPECT_EQ(saturated(std::int64_t{lowest} - 1), lowest);
  EXPECT_EQ(saturated(std::numeric_limits<std::int64_t>::max()), highest);
  EXPECT_EQ(saturated(std::numeric_limits<std::int64_t>::min()), lowest);
}

TEST(Decimal, PadsWithZerosAndNeverCuts) {
  const struct {
    std::int64_t value;
    std::size_t width;
    const char* text;
  } table[] = {
      {0, 1, "0"},
      {7, 1, "7"},
      {7, 2, "07"},
      {12, 2, "12"},
      {123, 2, "123"},
      {2024, 4, "2024"},
      {45, 4, "0045"},
      {12345, 4, "12345"},
      {-7, 1, "-7"},
      {-7, 2, "-7"},
      {-7, 3, "-07"},
      {-1991, 2, "-1991"},
      {std::numeric_limits<std::int64_t>::max(), 1, "9223372036854775807"},
      {std::numeric_limits<std::int64_t>::min(), 1, "-9223372036854775808"},
  };
  for (const auto& row : table) EXPECT_EQ(decimal(row.value, row.width), row.text);
}

}  // namespace
}  // namespace wenlolib::tests
