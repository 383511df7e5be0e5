#include "codec/Encryption.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "base/Trace.h"
#include "platform/Platform.h"
#include "wenlolib/codec.h"

using wenlolib::platform::Bytes;

int32_t CreateDigestMD5_CC(const char* text, uint8_t* digest) {
  if (text == nullptr || digest == nullptr) return 0;
  const Bytes message(reinterpret_cast<const uint8_t*>(text), std::strlen(text));
  std::ranges::copy(wenlolib::platform::current().digest->md5(message), digest);
  return 0;
}

int32_t DoEncryptXOR(uint8_t* destination, int32_t* /*unused*/, const uint8_t* source,
                     int32_t count, const uint8_t* key) {
  constexpr std::size_t keyLength = 16;
  if (destination == nullptr || source == nullptr || key == nullptr || count <= 0) return 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
    destination[i] = source[i] ^ key[i % keyLength];
  }
  return 0;
}

int32_t DoRC4Encrypt(const uint8_t* key, int32_t keyLength, const uint8_t* source,
                     int32_t sourceLength, uint8_t* destination, int32_t* outputLength) {
  if (key == nullptr || keyLength < 0 || sourceLength < 0 || outputLength == nullptr) return -1;
  if (sourceLength > 0 && (source == nullptr || destination == nullptr)) return -1;
  const Bytes keyBytes(key, static_cast<std::size_t>(keyLength));
  const Bytes message(source, static_cast<std::size_t>(sourceLength));
  if (!wenlolib::platform::current().cipher->rc4(keyBytes, message, destination)) return -1;
  *outputLength = sourceLength;
  return 0;
}

namespace wenlolib {

char encrypt(const platform::Md5Digest& key, Bytes source, std::uint8_t* destination) {
  const auto length = static_cast<std::int32_t>(source.size());
  std::int32_t outputLength = 0;
  const std::int32_t status = DoRC4Encrypt(key.data(), static_cast<std::int32_t>(key.size()),
                                           source.data(), length, destination, &outputLength);
  WENLOLIB_TRACE("outBuffLen  = %d", outputLength);
  if (status == 0) return 'R';
  DoEncryptXOR(destination, &outputLength, source.data(), length, key.data());
  return 'X';
}

}  // namespace wenlolib
