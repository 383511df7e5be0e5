#include "platform/linux/MbedCrypto.h"

#include <mbedtls/arc4.h>
#include <mbedtls/md5.h>

#include <cstring>
#include <functional>

namespace wenlolib::platform::gnulinux {
namespace {

constexpr std::size_t longestKey = 256;

/// Whether a write to `destination` would reach source bytes that are still to be read.
bool overlapsOtherwise(Bytes source, const std::uint8_t* destination) {
  const std::less<const std::uint8_t*> before;
  const std::uint8_t* start = source.data();
  return destination != start && before(destination, start + source.size()) &&
         before(start, destination + source.size());
}

/// One RC4 state, wiped when its scope ends.
struct Arc4 {
  mbedtls_arc4_context context;
  explicit Arc4(Bytes key) {
    mbedtls_arc4_init(&context);
    mbedtls_arc4_setup(&context, key.data(), static_cast<unsigned>(key.size()));
  }
  ~Arc4() { mbedtls_arc4_free(&context); }
  Arc4(const Arc4&) = delete;
  Arc4& operator=(const Arc4&) = delete;
};

}  // namespace

Md5Digest MbedDigest::md5(Bytes message) noexcept {
  Md5Digest digest{};
  // The status is for hardware that refuses; the digest in software never does.
  static_cast<void>(mbedtls_md5_ret(message.data(), message.size(), digest.data()));
  return digest;
}

bool MbedCipher::rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept {
  if (key.empty() || key.size() > longestKey) return false;
  if (source.empty()) return true;
  // The key is read first: it may lie where the source is about to be moved to.
  Arc4 cipher(key);
  if (overlapsOtherwise(source, destination)) {
    std::memmove(destination, source.data(), source.size());
    source = Bytes(destination, source.size());
  }
  return mbedtls_arc4_crypt(&cipher.context, source.size(), source.data(), destination) == 0;
}

}  // namespace wenlolib::platform::gnulinux
