#include "platform/linux/NettleCrypto.h"

#include <nettle/arcfour.h>
#include <nettle/md5.h>

#include <cstring>
#include <functional>

namespace wenlolib::platform::gnulinux {
namespace {

/// Whether a write to `destination` would reach source bytes that are still to be read.
bool overlapsOtherwise(Bytes source, const std::uint8_t* destination) {
  const std::less<const std::uint8_t*> before;
  const std::uint8_t* start = source.data();
  return destination != start && before(destination, start + source.size()) &&
         before(start, destination + source.size());
}

}  // namespace

Md5Digest NettleDigest::md5(Bytes message) noexcept {
  Md5Digest digest{};
  md5_ctx context;
  md5_init(&context);
  md5_update(&context, message.size(), message.data());
  md5_digest(&context, digest.size(), digest.data());
  return digest;
}

bool NettleCipher::rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept {
  // Nettle ends the process over a key of any other length.
  if (key.size() < ARCFOUR_MIN_KEY_SIZE || key.size() > ARCFOUR_MAX_KEY_SIZE) return false;
  if (source.empty()) return true;
  if (overlapsOtherwise(source, destination)) {
    std::memmove(destination, source.data(), source.size());
    source = Bytes(destination, source.size());
  }
  arcfour_ctx context;
  arcfour_set_key(&context, key.size(), key.data());
  arcfour_crypt(&context, source.size(), destination, source.data());
  return true;
}

}  // namespace wenlolib::platform::gnulinux
