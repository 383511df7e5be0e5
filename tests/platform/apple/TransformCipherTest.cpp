#include "platform/apple/AppleCrypto.h"

#include <algorithm>
#include <vector>

#include "platform/Platform.h"
#include "platform/apple/StubTest.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

using platform::Bytes;
using stubs::Refusal;

// A well-known test vector of RC4.
const std::string key = "Key";
const std::string plain = "Plaintext";
const std::vector<std::uint8_t> secret = {0xBB, 0xF3, 0x16, 0xE8, 0xD9, 0x40, 0xAF, 0x0A, 0xD3};

Bytes bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The codec's function over the cipher under test.
class TransformCipher : public StubTest {
 protected:
  TransformCipher() { services_.cipher = &cipher_; }

  std::int32_t encrypt() {
    output.assign(plain.size(), 0xEE);
    length = -77;
    return DoRC4Encrypt(bytesOf(key).data(), static_cast<std::int32_t>(key.size()),
                        bytesOf(plain).data(), static_cast<std::int32_t>(plain.size()),
                        output.data(), &length);
  }

  void expectRefused() {
    EXPECT_EQ(encrypt(), -1);
    EXPECT_EQ(output, std::vector<std::uint8_t>(plain.size(), 0xEE));
    EXPECT_EQ(length, -77);
  }

  std::vector<std::uint8_t> output;
  std::int32_t length = 0;

 private:
  MemoryPlatform memory_;
  platform::apple::TransformCipher cipher_;
  platform::Platform services_ = memory_.services;
  platform::Substitute substitute_{services_};
};

TEST_F(TransformCipher, TakesItsStepsInOrder) {
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(world.calls, (std::vector<std::string>{
                             "CFDictionaryCreateMutable", "CFDataCreate", "SecKeyCreateFromData",
                             "SecEncryptTransformCreate", "CFDataCreate",
                             "SecTransformSetAttribute", "SecTransformExecute"}));
  EXPECT_EQ(output, secret);
  EXPECT_EQ(length, 9);
}

TEST_F(TransformCipher, NamesTheCipherUnderTheTypeAttribute) {
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(world.keyParameters, "type=RC4;");
}

TEST_F(TransformCipher, RefusedAtAnyStepLeavesTheOutputsAlone) {
  for (const Refusal how :
       {Refusal::noObject, Refusal::noObjectAndError, Refusal::objectAndError}) {
    world = stubs::World();
    world.refusal = how;
    const std::size_t steps = refusingEachCall([&](const std::string& refused) {
      const bool onlyItsAnswer = refused == "SecTransformSetAttribute" && how == Refusal::noObject;
      if (refused.empty() || onlyItsAnswer) return static_cast<void>(encrypt());
      expectRefused();
      // Nothing is asked after a refused step, except for the key after its parameters.
      const std::size_t first = refused == "CFDictionaryCreateMutable" ? 1 : 0;
      EXPECT_EQ(world.calls.size(), *world.refusedCall + 1 + first);
    });
    EXPECT_EQ(steps, 7U);
  }
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

TEST_F(TransformCipher, EncryptsNothingByTheSameSteps) {
  const auto encryptsNothing = [] {
    return platform::apple::TransformCipher().rc4(bytesOf(key), {}, nullptr);
  };
  const std::size_t steps = refusingEachCall([&](const std::string& refused) {
    const bool onlyItsAnswer = refused == "SecTransformSetAttribute";
    const bool noData = refused == "SecTransformExecute";  // counts as data without any bytes
    EXPECT_EQ(encryptsNothing(), refused.empty() || onlyItsAnswer || noData) << refused;
  });
  EXPECT_EQ(steps, 7U);
  world = stubs::World();
  world.refusal = Refusal::noObjectAndError;
  EXPECT_EQ(refusingEachCall([&](const std::string& refused) {
              EXPECT_EQ(encryptsNothing(), refused.empty()) << refused;
            }),
            7U);
}

TEST_F(TransformCipher, WritesOverItsSource) {
  std::string text = plain;
  auto* place = reinterpret_cast<std::uint8_t*>(text.data());
  EXPECT_TRUE(platform::apple::TransformCipher().rc4(bytesOf(key), bytesOf(text), place));
  EXPECT_TRUE(std::ranges::equal(bytesOf(text), secret));
}

}  // namespace
}  // namespace wenlolib::tests
