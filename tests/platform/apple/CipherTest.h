/// The codec's function on the cipher of the macOS port.
#ifndef WENLOLIB_TESTS_PLATFORM_APPLE_CIPHERTEST_H
#define WENLOLIB_TESTS_PLATFORM_APPLE_CIPHERTEST_H

#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/apple/AppleCrypto.h"
#include "platform/apple/StubTest.h"
#include "support/MemoryPlatform.h"
#include "support/ReferenceCrypto.h"
#include "wenlolib/codec.h"

namespace wenlolib::tests {

// A well-known test vector of RC4.
inline const std::string key = "Key";
inline const std::string plain = "Plaintext";
inline const std::vector<std::uint8_t> secret = {0xBB, 0xF3, 0x16, 0xE8, 0xD9,
                                                 0x40, 0xAF, 0x0A, 0xD3};

template <class Fixture>
class CipherTest : public Fixture {
 protected:
  CipherTest() { services_.cipher = &cipher_; }

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

}  // namespace wenlolib::tests

#endif
