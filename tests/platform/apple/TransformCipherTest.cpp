#include "platform/apple/AppleCrypto.h"

#include <algorithm>

#include "platform/apple/CipherTest.h"

namespace wenlolib::tests {
namespace {

class TransformCipher : public CipherTest<PortTest> {};

TEST_F(TransformCipher, Encrypts) {
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(output, secret);
  EXPECT_EQ(length, 9);
}

TEST_F(TransformCipher, NamesTheCipherUnderTheTypeAttribute) {
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(world.keyParameters, "type=RC4;");
}

TEST_F(TransformCipher, GoesOnWhenOnlyTheAnswerToItsInputIsNo) {
  world.attributeAnswer = false;
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(output, secret);
}

TEST_F(TransformCipher, RefusesAResultThatIsNotDataOrHasAnotherLength) {
  world.resultIsData = false;
  expectRefused();
  world.resultIsData = true;
  world.resultLength = 8;
  expectRefused();
}

TEST_F(TransformCipher, IsRefusedWhereTheSystemHasNoTransforms) {
  for (const char* name : {"SecKeyCreateFromData", "SecEncryptTransformCreate"}) {
    world = stubs::World();
    world.absent = {name};
    expectRefused();
    EXPECT_EQ(world.calls, std::vector<std::string>()) << name;
  }
}

TEST_F(TransformCipher, TakesKeysOf1To256Bytes) {
  platform::apple::TransformCipher cipher;
  std::uint8_t byte = 0;
  const auto takes = [&](std::size_t bytes) {
    return cipher.rc4(bytesOf(std::string(bytes, 'k')), bytesOf("x"), &byte);
  };
  EXPECT_FALSE(takes(0));
  EXPECT_TRUE(takes(1));
  EXPECT_TRUE(takes(256));
  EXPECT_FALSE(takes(257));
}

TEST_F(TransformCipher, WritesOverItsSource) {
  std::string text = plain;
  auto* place = reinterpret_cast<std::uint8_t*>(text.data());
  EXPECT_TRUE(platform::apple::TransformCipher().rc4(bytesOf(key), bytesOf(text), place));
  EXPECT_TRUE(std::ranges::equal(bytesOf(text), secret));
}

}  // namespace
}  // namespace wenlolib::tests
