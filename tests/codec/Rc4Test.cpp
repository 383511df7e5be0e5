#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "codec/PublishedRc4.h"
#include "support/PlatformTest.h"
#include "support/ReferenceCrypto.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {
namespace {

struct Encryption {
  std::int32_t status;
  std::string bytes;
  std::int32_t length;
};

Encryption encrypted(const std::string& key, const std::string& source) {
  Encryption result{0, std::string(source.size(), 'Z'), -77};
  result.status =
      DoRC4Encrypt(bytesOf(key).data(), static_cast<std::int32_t>(key.size()),
                   bytesOf(source).data(), static_cast<std::int32_t>(source.size()),
                   reinterpret_cast<std::uint8_t*>(result.bytes.data()), &result.length);
  return result;
}

TEST(DoRC4Encrypt, GivesThePublishedKeystreams) {
  const std::string zeros(4112, '\0');
  for (const PublishedKey& row : published) {
    const std::string stream = encrypted(fromHex(row.key), zeros).bytes;
    for (const Published& part : row.keystream) {
      EXPECT_EQ(upperHex(bytesOf(stream.substr(part.offset, 16))), part.bytes)
          << row.key << " at " << part.offset;
    }
  }
}

TEST(ReferenceRc4, GivesThePublishedKeystreams) {
  const std::string zeros(4112, '\0');
  for (const PublishedKey& row : published) {
    const std::string stream = referenceRc4(bytesOf(fromHex(row.key)), zeros);
    for (const Published& part : row.keystream) {
      EXPECT_EQ(upperHex(bytesOf(stream.substr(part.offset, 16))), part.bytes)
          << row.key << " at " << part.offset;
    }
  }
}

TEST(DoRC4Encrypt, YieldsAsManyBytesAsItReadsAndTheSourceWhenAppliedTwice) {
  const std::string key = "0123456789abcdef";
  for (const std::size_t length : {1U, 2U, 15U, 16U, 255U, 256U, 1000U}) {
    const std::string source(length, 'c');
    const Encryption once = encrypted(key, source);
    EXPECT_EQ(once.status, 0);
    EXPECT_EQ(once.length, static_cast<std::int32_t>(length));
    EXPECT_NE(once.bytes, source);
    EXPECT_EQ(encrypted(key, once.bytes).bytes, source);
  }
}

TEST(DoRC4Encrypt, AgreesWithTheReferenceForKeysOfEveryLength) {
  const std::string source(64, 's');
  for (std::size_t length = 1; length <= 256; ++length) {
    const std::string key(length, static_cast<char>('A' + length % 26));
    EXPECT_EQ(encrypted(key, source).bytes, referenceRc4(bytesOf(key), source)) << length;
  }
}

TEST(DoRC4Encrypt, RefusesKeysThatTheCipherDoesNotTake) {
  for (const std::size_t length : {0U, 257U, 1000U}) {
    const Encryption result = encrypted(std::string(length, 'k'), "source");
    EXPECT_EQ(result.status, -1) << length;
    EXPECT_EQ(result.bytes, "ZZZZZZ");
    EXPECT_EQ(result.length, -77);
  }
}

TEST(DoRC4Encrypt, BuffersMayOverlapInAnyWay) {
  const std::string key = "key";
  std::string source;
  for (int i = 0; i < 100; ++i) source += static_cast<char>(i);
  const std::string expected = referenceRc4(bytesOf(key), source);
  for (std::size_t from = 0; from <= 20; from += 5) {
    for (std::size_t to = 0; to <= 20; to += 5) {
      std::vector<std::uint8_t> memory(120);
      std::memcpy(memory.data() + from, source.data(), source.size());
      std::int32_t length = 0;
      EXPECT_EQ(DoRC4Encrypt(bytesOf(key).data(), 3, memory.data() + from, 100, memory.data() + to,
                             &length),
                0);
      EXPECT_EQ(std::string(memory.begin() + static_cast<std::ptrdiff_t>(to),
                            memory.begin() + static_cast<std::ptrdiff_t>(to + 100)),
                expected)
          << from << " to " << to;
    }
  }
}

TEST(DoRC4Encrypt, UsesTheKeyAsItWasWhereverItLies) {
  std::string bytes;
  for (int i = 0; i < 100; ++i) bytes += static_cast<char>(i * 7);
  for (std::size_t from = 0; from <= 20; from += 4) {
    for (std::size_t to = 0; to <= 20; to += 4) {
      for (std::size_t keyAt = 0; keyAt <= 84; keyAt += 4) {
        std::string memory = bytes;
        auto* start = reinterpret_cast<std::uint8_t*>(memory.data());
        const std::string expected =
            referenceRc4(bytesOf(bytes.substr(keyAt, 16)), bytes.substr(from, 80));
        std::int32_t length = 0;
        EXPECT_EQ(DoRC4Encrypt(start + keyAt, 16, start + from, 80, start + to, &length), 0);
        EXPECT_EQ(memory.substr(to, 80), expected) << from << " to " << to << " key " << keyAt;
      }
    }
  }
}

TEST(DoRC4Encrypt, ZeroBytesSucceedWithNullBuffersToo) {
  const std::uint8_t key[16] = {};
  std::int32_t length = -77;
  EXPECT_EQ(DoRC4Encrypt(key, 16, nullptr, 0, nullptr, &length), 0);
  EXPECT_EQ(length, 0);
}

TEST(DoRC4Encrypt, NullPointersAndNegativeLengthsFailAndWriteNothing) {
  const std::uint8_t key[16] = {};
  const std::uint8_t source[4] = {1, 2, 3, 4};
  std::uint8_t result[4] = {9, 9, 9, 9};
  std::int32_t length = -77;
  EXPECT_EQ(DoRC4Encrypt(nullptr, 16, source, 4, result, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, -1, source, 4, result, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, nullptr, 4, result, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, source, -1, result, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, source, 4, nullptr, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, source, 4, result, nullptr), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, nullptr, 1, result, &length), -1);
  EXPECT_EQ(DoRC4Encrypt(key, 16, source, 1, nullptr, &length), -1);
  EXPECT_EQ(length, -77);
  for (const std::uint8_t byte : result) EXPECT_EQ(byte, 9);
}

class RefusedCipher : public PlatformTest {};

TEST_F(RefusedCipher, LeavesDestinationAndLengthAsTheyWere) {
  world.faults.failAlways("cipher.rc4");
  const Encryption result = encrypted("0123456789abcdef", "source");
  EXPECT_EQ(result.status, -1);
  EXPECT_EQ(result.bytes, "ZZZZZZ");
  EXPECT_EQ(result.length, -77);
  EXPECT_EQ(world.journal.lines(), Journal::Lines{"cipher.rc4"});
}

}  // namespace
}  // namespace wenlolib::tests
