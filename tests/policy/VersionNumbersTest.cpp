#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using Toolkit = CommonTooWenlolib;
constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

TEST(ConvertVersionStrToNum, ReadsThreeParts) {
  const struct {
    Text version;
    std::int32_t number;
  } table[] = {
      {"10.9", 100900},     {"10.9.5", 100905},   {"3", 30000},        {"1.2.3.4", 10203},
      {"2.1.0b3", 20100},   {"99.99.99", 999999}, {"1.0.0", 10000},    {" 3.1", 30100},
      {"3. 1. 2", 30102},   {"3.", 30000},        {"3..5", 30005},     {"3.1.", 30100},
      {"3x.1", 30100},      {"3.x.1", 30001},     {"03.01.02", 30102}, {"+3.+1", 30100},
      {"3.1.2.999", 30102}, {"3.1-5", 30100},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertVersionStrToNum(row.version), row.number)
        << row.version.value_or("(null)");
  }
}

TEST(ConvertVersionStrToNum, RefusesNullAndAMajorOfZeroOrOf100AndMore) {
  const Text refused[] = {std::nullopt, "",     "0.9.1", "100.0.0", "abc",    ".5",   "..",
                          "1000",       "-0.1", "x.1.2", "\xFF",    "3.\xFF", "00.1", "9999999999"};
  for (const Text& version : refused) {
    EXPECT_EQ(Toolkit::convertVersionStrToNum(version), -1) << version.value_or("(null)");
  }
}

TEST(ConvertVersionStrToNum, AMinorOrPatchOf100AndMoreGivesTheBareMajor) {
  const struct {
    const char* version;
    std::int32_t number;
  } table[] = {{"3.100.0", 3},     {"3.1.250", 3},      {"3.100", 3},  {"99.0.100", 99},
               {"3.99.99", 39999}, {"3.9999999999", 3}, {"-5.100", -5}};
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertVersionStrToNum(row.version), row.number) << row.version;
  }
}

TEST(ConvertVersionStrToNum, NegativePartsPassAndTheResultSaturates) {
  EXPECT_EQ(Toolkit::convertVersionStrToNum("-5.1.2"), -50000 + 102);
  EXPECT_EQ(Toolkit::convertVersionStrToNum("3.-1.2"), 30000 - 100 + 2);
  EXPECT_EQ(Toolkit::convertVersionStrToNum("3.1.-2"), 30100 - 2);
  EXPECT_EQ(Toolkit::convertVersionStrToNum("-9999999999"), lowest);
  EXPECT_EQ(Toolkit::convertVersionStrToNum("3.-9999999999"), lowest);
}

TEST(ConvertVersionNumToStr, TakesANumberApart) {
  const struct {
    std::int32_t number;
    Text version;
  } table[] = {
      {30105, "3.1.5"},   {30005, "3.0.5"},       {10000, "1.0.0"},        {999999, "99.99.99"},
      {100900, "10.9.0"}, {9999, std::nullopt},   {1000000, std::nullopt}, {0, std::nullopt},
      {-1, std::nullopt}, {-30105, std::nullopt}, {highest, std::nullopt}, {lowest, std::nullopt},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertVersionNumToStr(row.number), row.version) << row.number;
  }
}

TEST(ConvertVersionNumToBiasStr, AddsTheBiasToTheMajorAndDropsThePatch) {
  const struct {
    std::int32_t number;
    Text bias;
  } table[] = {
      {30105, "1003.1"},       {10000, "1001.0"},  {999999, "1099.99"},     {9999, std::nullopt},
      {1000000, std::nullopt}, {-1, std::nullopt}, {highest, std::nullopt}, {lowest, std::nullopt},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertVersionNumToBiasStr(row.number), row.bias) << row.number;
  }
}

TEST(ConvertVersionStrToBiasStr, ReadsWhatStandsBeforeTheFirstTwoPoints) {
  const struct {
    Text version, bias;
  } table[] = {
      {"3.1.5", "1003.1"},        {"10.16.0", "1010.16"},
      {"3.1.", "1003.1"},         {"..", "1000.0"},
      {"a.b.c", "1000.0"},        {"-1000.2.3", "0.2"},
      {"3.1.5.7", "1003.1"},      {std::nullopt, std::nullopt},
      {"\xFF.1.2", std::nullopt}, {"9999999999.1.2", "2147483647.1"},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertVersionStrToBiasStr(row.version), row.bias)
        << row.version.value_or("(null)");
  }
}

TEST(ConvertVersionStrToBiasStr, FewerThanTwoPointsRaiseARangeError) {
  for (const char* version : {"", "3", "3.1", ".", "abc"}) {
    EXPECT_THROW(static_cast<void>(Toolkit::convertVersionStrToBiasStr(version)), std::out_of_range)
        << version;
  }
}

TEST(ConvertBiasVersionStrToVerStr, TakesTheBiasOff) {
  const struct {
    Text bias, version;
  } table[] = {
      {"1003.1", "3.1"},           {"1003", "3.0"},
      {"1000.0", "0.0"},           {"1099.99", "99.99"},
      {"1003.1.7", "3.1"},         {"1003.", "3.0"},
      {"1003.x", "3.0"},           {"1003.250", "3.250"},
      {" 1003.1", "3.1"},          {"999.5", std::nullopt},
      {"1100.0", std::nullopt},    {"3.1", std::nullopt},
      {"", std::nullopt},          {"abc", std::nullopt},
      {"-1003.1", std::nullopt},   {std::nullopt, std::nullopt},
      {"1003.\xFF", std::nullopt},
  };
  for (const auto& row : table) {
    EXPECT_EQ(Toolkit::convertBiasVersionStrToVerStr(row.bias), row.version)
        << row.bias.value_or("(null)");
  }
}

TEST(VersionNumbers, GoToTextAndBackUnchanged) {
  for (std::int32_t number = 10000; number < 1000000; number += 37) {
    EXPECT_EQ(Toolkit::convertVersionStrToNum(Toolkit::convertVersionNumToStr(number)), number);
    EXPECT_EQ(Toolkit::convertVersionStrToBiasStr(Toolkit::convertVersionNumToStr(number)),
              Toolkit::convertVersionNumToBiasStr(number));
  }
}

}  // namespace
}  // namespace wenlolib::tests
