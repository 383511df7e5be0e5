#include <gtest/gtest.h>

#include <array>
#include <numeric>

#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

using Key = std::array<std::uint8_t, 16>;

Key countingKey() {
  Key key{};
  std::iota(key.begin(), key.end(), std::uint8_t{0x10});
  return key;
}

TEST(DoEncryptXOR, UsesKeyBytesInACycleOfSixteen) {
  const Key key = countingKey();
  std::array<std::uint8_t, 20> source{};
  std::iota(source.begin(), source.end(), std::uint8_t{0x80});
  std::array<std::uint8_t, 20> result{};
  EXPECT_EQ(DoEncryptXOR(result.data(), nullptr, source.data(), 20, key.data()), 0);
  for (std::size_t i = 0; i < 16; ++i) EXPECT_EQ(result[i], source[i] ^ key[i]);
  for (std::size_t i = 16; i < 20; ++i) EXPECT_EQ(result[i], source[i] ^ key[i - 16]);
}

TEST(DoEncryptXOR, WritesNothingBeyondItsCount) {
  const Key key = countingKey();
  const std::array<std::uint8_t, 20> source{};
  for (std::size_t count = 1; count < source.size(); ++count) {
    std::array<std::uint8_t, 20> result{};
    result.fill(0x5A);
    DoEncryptXOR(result.data(), nullptr, source.data(), static_cast<std::int32_t>(count),
                 key.data());
    EXPECT_EQ(result[count - 1], key[(count - 1) % 16]);
    EXPECT_EQ(result[count], 0x5A) << count;
  }
}

TEST(DoEncryptXOR, AppliedTwiceGivesTheSourceBackInOneBuffer) {
  const Key key = countingKey();
  std::array<std::uint8_t, 33> buffer{};
  std::iota(buffer.begin(), buffer.end(), std::uint8_t{7});
  const auto source = buffer;
  DoEncryptXOR(buffer.data(), nullptr, buffer.data(), 33, key.data());
  EXPECT_NE(buffer, source);
  DoEncryptXOR(buffer.data(), nullptr, buffer.data(), 33, key.data());
  EXPECT_EQ(buffer, source);
}

TEST(DoEncryptXOR, NeitherReadsNorWritesItsSecondArgument) {
  const Key key = countingKey();
  const std::uint8_t source = 1;
  std::uint8_t result = 0;
  std::int32_t length = -77;
  EXPECT_EQ(DoEncryptXOR(&result, &length, &source, 1, key.data()), 0);
  EXPECT_EQ(length, -77);
  EXPECT_EQ(result, 1 ^ key[0]);
}

TEST(DoEncryptXOR, WritesNothingForACountOfZeroOrLess) {
  const Key key = countingKey();
  const std::uint8_t source = 1;
  for (const std::int32_t count : {0, -1, INT32_MIN}) {
    std::uint8_t result = 0x5A;
    EXPECT_EQ(DoEncryptXOR(&result, nullptr, &source, count, key.data()), 0);
    EXPECT_EQ(result, 0x5A);
  }
}

TEST(DoEncryptXOR, NullPointersWriteNothing) {
  const Key key = countingKey();
  const std::uint8_t source = 1;
  std::uint8_t result = 0x5A;
  EXPECT_EQ(DoEncryptXOR(nullptr, nullptr, &source, 1, key.data()), 0);
  EXPECT_EQ(DoEncryptXOR(&result, nullptr, nullptr, 1, key.data()), 0);
  EXPECT_EQ(DoEncryptXOR(&result, nullptr, &source, 1, nullptr), 0);
  EXPECT_EQ(result, 0x5A);
}

}  // namespace
}  // namespace wenlolib::tests
