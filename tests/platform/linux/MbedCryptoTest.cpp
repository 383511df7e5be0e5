#include "platform/linux/MbedCrypto.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ReferenceCrypto.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

using platform::gnulinux::MbedCipher;
using platform::gnulinux::MbedDigest;
using Buffer = std::vector<std::uint8_t>;

TEST(MbedDigest, GivesThePublishedDigests) {
  struct Case {
    const char* message;
    const char* digest;
  };
  for (const Case& each :
       {Case{"", "D41D8CD98F00B204E9800998ECF8427E"},
        {"a", "0CC175B9C0F1B6A831C399E269772661"},
        {"abc", "900150983CD24FB0D6963F7D28E17F72"},
        {"message digest", "F96B697D7CB7938D525A2F31AAF161D0"},
        {"abcdefghijklmnopqrstuvwxyz", "C3FCD3D76192E4007DFB496CCA67E13B"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "D174AB98D277D9F5A5611C2C9F419D9F"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57EDF4A22BE3C955AC49DA2E2107B67A"}}) {
    EXPECT_EQ(upperHex(MbedDigest().md5(bytesOf(each.message))), each.digest) << each.message;
  }
}

TEST(MbedDigest, AgreesWithTheReferenceAtEveryLengthAroundABlock) {
  std::string message;
  for (int length = 0; length < 200; ++length) {
    EXPECT_EQ(MbedDigest().md5(bytesOf(message)), referenceMd5(bytesOf(message))) << length;
    message += static_cast<char>(length * 37);
  }
}

/// RFC 6229: 16 bytes of the keystream of `key` from `offset` on.
std::string keystream(const std::string& key, std::size_t offset) {
  const Buffer zeros(offset + 16);
  Buffer stream(zeros.size());
  EXPECT_TRUE(MbedCipher().rc4(bytesOf(key), zeros, stream.data()));
  return upperHex(ByteView(stream).subspan(offset));
}

TEST(MbedCipher, GivesThePublishedKeystreams) {
  const std::string shorter = fromHex("0102030405");
  const std::string longer = fromHex("0102030405060708090A0B0C0D0E0F10");
  EXPECT_EQ(keystream(shorter, 0), "B2396305F03DC027CCC3524A0A1118A8");
  EXPECT_EQ(keystream(shorter, 16), "6982944F18FC82D589C403A47A0D0919");
  EXPECT_EQ(keystream(shorter, 4096), "FF25B58995996707E51FBDF08B34D875");
  EXPECT_EQ(keystream(longer, 0), "9AC7CC9A609D1EF7B2932899CDE41B97");
  EXPECT_EQ(keystream(longer, 16), "5248C4959014126A6E8A84F11D1A9E1C");
  EXPECT_EQ(keystream(longer, 4096), "A36A4C301AE8AC13610CCBC12256CACC");
}

TEST(MbedCipher, MayWriteOverItsSourceInAnyWay) {
  const std::string key = "a key";
  std::string text;
  for (int i = 0; i < 1000; ++i) text += static_cast<char>(i * 11);
  const std::string expected = referenceRc4(bytesOf(key), text);
  for (const int shift : {0, 1, -1, 7, -7, 16, 500, -500, 999, -999, 1000, -1000, 1200}) {
    Buffer buffer(4000);
    std::uint8_t* source = buffer.data() + 1500;
    std::ranges::copy(text, source);
    ASSERT_TRUE(MbedCipher().rc4(bytesOf(key), {source, text.size()}, source + shift));
    EXPECT_EQ(upperHex({source + shift, text.size()}), upperHex(bytesOf(expected))) << shift;
  }
}

TEST(MbedCipher, UsesTheKeyAsItWasWhereItLiesInTheDestination) {
  std::string bytes;
  for (int i = 0; i < 120; ++i) bytes += static_cast<char>(i * 7);
  for (std::size_t to = 0; to <= 32; to += 4) {
    for (std::size_t keyAt = 0; keyAt <= 104; keyAt += 4) {
      std::string memory = bytes;
      auto* start = reinterpret_cast<std::uint8_t*>(memory.data());
      std::int32_t length = 0;
      // Through the codec, which hosts call, on this port's cipher.
      EXPECT_EQ(DoRC4Encrypt(start + keyAt, 16, start + 16, 80, start + to, &length), 0);
      EXPECT_EQ(memory.substr(to, 80),
                referenceRc4(bytesOf(bytes.substr(keyAt, 16)), bytes.substr(16, 80)))
          << to << " key " << keyAt;
    }
  }
}

TEST(MbedCipher, TakesKeysOf1To256BytesAndRefusesOthersUntouched) {
  for (const unsigned length : {1U, 5U, 16U, 255U, 256U}) {
    const std::string key(length, 'k');
    Buffer result(4);
    EXPECT_TRUE(MbedCipher().rc4(bytesOf(key), bytesOf("text"), result.data())) << length;
    EXPECT_EQ(upperHex(result), upperHex(bytesOf(referenceRc4(bytesOf(key), "text"))));
  }
  for (const unsigned length : {0U, 257U, 1000U}) {
    const std::string key(length, 'k');
    Buffer result(4, 0xEE);
    EXPECT_FALSE(MbedCipher().rc4(bytesOf(key), bytesOf("text"), result.data())) << length;
    EXPECT_EQ(result, Buffer(4, 0xEE));
  }
}

TEST(MbedCipher, EncryptsNothingWithoutABuffer) {
  EXPECT_TRUE(MbedCipher().rc4(bytesOf("key"), {}, nullptr));
  EXPECT_FALSE(MbedCipher().rc4({}, {}, nullptr));
}

}  // namespace
}  // namespace wenlolib::tests
