#include "platform/apple/AppleDigest.h"

#include <CommonCrypto/CommonDigest.h>

#include <algorithm>
#include <limits>

namespace wenlolib::platform::apple {
namespace {

/// In pieces: the length that one call takes has 32 bits.
Md5Digest md5OfLong(Bytes message) noexcept {
  constexpr std::size_t piece = std::size_t{1} << 30;
  Md5Digest digest{};
  CC_MD5_CTX context;
  CC_MD5_Init(&context);
  while (!message.empty()) {
    const Bytes next = message.first(std::min(message.size(), piece));
    CC_MD5_Update(&context, next.data(), static_cast<CC_LONG>(next.size()));
    message = message.subspan(next.size());
  }
  CC_MD5_Final(digest.data(), &context);
  return digest;
}

}  // namespace

Md5Digest AppleDigest::md5(Bytes message) noexcept {
  if (message.size() > std::numeric_limits<CC_LONG>::max()) return md5OfLong(message);
  Md5Digest digest{};
  CC_MD5(message.data(), static_cast<CC_LONG>(message.size()), digest.data());
  return digest;
}

}  // namespace wenlolib::platform::apple
