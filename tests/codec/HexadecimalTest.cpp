#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

constexpr std::uint8_t untouched = 0x5A;

TEST(ConvertHexToCharData, WritesTwoCapitalDigitsAByte) {
  const std::uint8_t bytes[] = {0x00, 0xAB, 0x7F};
  std::string text(8, '#');
  EXPECT_EQ(ConvertHexToCharData(bytes, text.data(), 3, 1), 0);
  EXPECT_EQ(text, "00AB7F##");
}

TEST(ConvertHexToCharData, KnowsEveryByte) {
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<std::uint8_t>(value);
    char text[3] = {};
    ConvertHexToCharData(&byte, text, 1, 1);
    EXPECT_EQ(std::stoi(text, nullptr, 16), value);
    EXPECT_EQ(std::string(text).find_first_not_of("0123456789ABCDEF"), std::string::npos);
  }
}

TEST(ConvertHexToCharData, WritesNothingForACountOfZeroOrLess) {
  const std::uint8_t byte = 0xAB;
  for (const std::int32_t count : {0, -1, INT32_MIN}) {
    std::string text(4, '#');
    EXPECT_EQ(ConvertHexToCharData(&byte, text.data(), count, 1), 0);
    EXPECT_EQ(text, "####");
  }
}

TEST(ConvertHexToCharData, IgnoresItsFlag) {
  const std::uint8_t bytes[] = {0x0A, 0xF0};
  for (const int flag : {0, 1, 2, 255}) {
    std::string text(4, '#');
    EXPECT_EQ(ConvertHexToCharData(bytes, text.data(), 2, static_cast<std::uint8_t>(flag)), 0);
    EXPECT_EQ(text, "0AF0");
  }
}

TEST(ConvertHexToCharData, NullPointersWriteNothing) {
  const std::uint8_t byte = 0xAB;
  std::string text(4, '#');
  EXPECT_EQ(ConvertHexToCharData(nullptr, text.data(), 1, 1), 0);
  EXPECT_EQ(text, "####");
  EXPECT_EQ(ConvertHexToCharData(&byte, nullptr, 1, 1), 0);
  EXPECT_EQ(ConvertHexToCharData(nullptr, nullptr, 0, 1), 0);
}

struct Conversion {
  const char* text;
  std::uint8_t flag;
  std::int32_t status;
  std::vector<std::uint8_t> bytes;
};

void expectConversion(const Conversion& row) {
  std::array<std::uint8_t, 8> bytes{};
  bytes.fill(untouched);
  EXPECT_EQ(ConvertCharDataToHex(row.text, bytes.data(), row.flag), row.status) << row.text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    EXPECT_EQ(bytes[i], i < row.bytes.size() ? row.bytes[i] : untouched) << row.text << " at " << i;
  }
}

TEST(ConvertCharDataToHex, ReadsHexadecimalPairsWithItsFlagSet) {
  const Conversion table[] = {
      {"0aFF", 1, 0, {0x0A, 0xFF}},
      {"0aFF", 2, 0, {0x0A, 0xFF}},
      {"0aFF", 255, 0, {0x0A, 0xFF}},
      {"00ab7f", 1, 0, {0x00, 0xAB, 0x7F}},
      {"", 1, 0, {}},
      {"abc", 1, 1, {0xAB}},  // the partner of the last character is the NUL
      {"a", 1, 1, {}},
      {"zz11", 1, 1, {}},
      {"1g", 1, 1, {}},
      {"g1", 1, 1, {}},
      {"11zz22", 1, 1, {0x11}},
      {"1 ", 1, 1, {}},
      {" 11", 1, 1, {}},
      {"-1", 1, 1, {}},
      {"\xC3\xA4", 1, 1, {}},
      {"1\xFF", 1, 1, {}},
  };
  for (const Conversion& row : table) expectConversion(row);
}

TEST(ConvertCharDataToHex, ReadsDecimalPairsWithItsFlagClear) {
  const Conversion table[] = {
      {"12", 0, 0, {12}},   {"99", 0, 0, {99}},  {"0099", 0, 0, {0, 99}},
      {"", 0, 0, {}},       {"1a", 0, 1, {}},    {"a1", 0, 1, {}},
      {"12ff", 0, 1, {12}}, {"123", 0, 1, {12}}, {"1", 0, 1, {}},
  };
  for (const Conversion& row : table) expectConversion(row);
}

TEST(ConvertCharDataToHex, NullPointersFail) {
  std::uint8_t byte = untouched;
  EXPECT_EQ(ConvertCharDataToHex(nullptr, &byte, 1), 1);
  EXPECT_EQ(byte, untouched);
  EXPECT_EQ(ConvertCharDataToHex("11", nullptr, 1), 1);
  EXPECT_EQ(ConvertCharDataToHex(nullptr, nullptr, 1), 1);
}

TEST(ConvertCharDataToHex, AnEmptyTextNeedsNoRoom) {
  for (const int flag : {0, 1}) {
    EXPECT_EQ(ConvertCharDataToHex("", nullptr, static_cast<std::uint8_t>(flag)), 0);
  }
  EXPECT_EQ(ConvertCharDataToHex("1", nullptr, 1), 1);
}

TEST(ConvertCharDataToHex, GivesBackWhatTheOtherConversionWrote) {
  std::array<std::uint8_t, 256> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i);
  std::array<char, 513> text{};
  ConvertHexToCharData(bytes.data(), text.data(), 256, 1);
  std::array<std::uint8_t, 256> back{};
  EXPECT_EQ(ConvertCharDataToHex(text.data(), back.data(), 1), 0);
  EXPECT_EQ(back, bytes);
}

TEST(HexPrint, AnswersZeroWhateverItIsGivenAndPrintsNothing) {
  const std::uint8_t byte = 1;
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  EXPECT_EQ(hexPrint("label", &byte, 1), 0);
  EXPECT_EQ(hexPrint(nullptr, nullptr, 100), 0);
  EXPECT_EQ(hexPrint("label", &byte, -1), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
}  // namespace wenlolib::tests
