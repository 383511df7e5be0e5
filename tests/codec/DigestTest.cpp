#include <gtest/gtest.h>

#include <array>
#include <string>

#include "support/ReferenceCrypto.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

std::string digestOf(const char* text) {
  std::array<std::uint8_t, 16> digest{};
  EXPECT_EQ(CreateDigestMD5_CC(text, digest.data()), 0);
  return upperHex(digest);
}

// RFC 1321, appendix A.5.
const struct {
  const char* text;
  const char* digest;
} published[] = {
    {"", "D41D8CD98F00B204E9800998ECF8427E"},
    {"a", "0CC175B9C0F1B6A831C399E269772661"},
    {"abc", "900150983CD24FB0D6963F7D28E17F72"},
    {"message digest", "F96B697D7CB7938D525A2F31AAF161D0"},
    {"abcdefghijklmnopqrstuvwxyz", "C3FCD3D76192E4007DFB496CCA67E13B"},
    {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
     "D174AB98D277D9F5A5611C2C9F419D9F"},
    {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
     "57EDF4A22BE3C955AC49DA2E2107B67A"},
};

TEST(CreateDigestMD5, GivesThePublishedDigests) {
  for (const auto& row : published) EXPECT_EQ(digestOf(row.text), row.digest) << row.text;
}

TEST(ReferenceMd5, GivesThePublishedDigests) {
  for (const auto& row : published) {
    EXPECT_EQ(upperHex(referenceMd5(bytesOf(row.text))), row.digest) << row.text;
  }
}

TEST(CreateDigestMD5, AgreesWithTheReferenceAtEveryLengthAroundABlock) {
  for (std::size_t length = 0; length <= 200; ++length) {
    const std::string text(length, 'q');
    EXPECT_EQ(digestOf(text.c_str()), upperHex(referenceMd5(bytesOf(text)))) << length;
  }
}

TEST(CreateDigestMD5, CountsOnlyWhatStandsBeforeTheFirstNul) {
  EXPECT_EQ(digestOf("abc\0def"), digestOf("abc"));
  EXPECT_NE(digestOf("abc"), digestOf("abcdef"));
}

TEST(CreateDigestMD5, NullPointersWriteNothing) {
  std::array<std::uint8_t, 16> digest{};
  digest.fill(0x5A);
  const auto before = digest;
  EXPECT_EQ(CreateDigestMD5_CC(nullptr, digest.data()), 0);
  EXPECT_EQ(digest, before);
  EXPECT_EQ(CreateDigestMD5_CC("abc", nullptr), 0);
}

}  // namespace
}  // namespace wenlolib::tests
