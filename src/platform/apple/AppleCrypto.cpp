#include "platform/apple/AppleCrypto.h"

#include <CommonCrypto/CommonDigest.h>
#include <Security/Security.h>

#include <algorithm>
#include <limits>
#include <optional>

#include "base/Answered.h"
#include "platform/apple/Objects.h"

namespace wenlolib::platform::apple {

// --- MD5, from CommonCrypto ---

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

// --- RC4, from the Security framework's transforms ---

namespace {

/// Everything that one encryption creates. It is all released when the encryption ends, however it
/// ends.
struct Objects {
  Owned<CFMutableDictionaryRef> parameters;
  Owned<SecKeyRef> key;
  Owned<SecTransformRef> transform;
  Owned<CFDataRef> keyData;
  Owned<CFDataRef> input;
  Owned<CFTypeRef> result;
  Owned<CFErrorRef> error;
};

bool makeKey(Objects& objects, Bytes key) {
  objects.parameters = Owned(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                       &kCFTypeDictionaryValueCallBacks));
  if (objects.parameters) {
    // On purpose: the framework documents kSecAttrKeyType for this, but what this attribute
    // produces is what every reader of the documents has always seen.
    CFDictionarySetValue(objects.parameters.get(), kSecAttrType, kSecAttrKeyTypeRC4);
  }
  objects.keyData = dataFrom(key);
  if (!objects.parameters || !objects.keyData) return false;
  objects.key = Owned(
      SecKeyCreateFromData(objects.parameters.get(), objects.keyData.get(), objects.error.slot()));
  return !objects.error && objects.key;
}

bool makeTransform(Objects& objects, Bytes source) {
  objects.transform =
      Owned<SecTransformRef>(SecEncryptTransformCreate(objects.key.get(), objects.error.slot()));
  if (objects.error || !objects.transform) return false;
  objects.input = dataFrom(source);
  if (!objects.input) return false;
  // Only an error counts: the call may return false for an input that it has accepted.
  static_cast<void>(SecTransformSetAttribute(objects.transform.get(),
                                             kSecTransformInputAttributeName, objects.input.get(),
                                             objects.error.slot()));
  return !objects.error;
}

/// The encrypted bytes; nothing if the service refuses at any step. For an empty source the result
/// may be empty data or no data at all.
std::optional<Bytes> encrypt(Objects& objects, Bytes key, Bytes source) {
  if (!makeKey(objects, key) || !makeTransform(objects, source)) return std::nullopt;
  objects.result = Owned(SecTransformExecute(objects.transform.get(), objects.error.slot()));
  if (objects.error) return std::nullopt;
  const auto* data = as<CFDataRef>(CFDataGetTypeID(), objects.result.get());
  if (data != nullptr) return bytesOf(data);
  return source.empty() ? std::optional(Bytes()) : std::nullopt;
}

}  // namespace

bool TransformCipher::rc4(Bytes key, Bytes source, std::uint8_t* destination) noexcept {
  constexpr std::size_t longestKey = 256;
  if (key.empty() || key.size() > longestKey) return false;
  // Long deprecated. If the transforms are gone, so is the cipher.
  if (!isOffered("SecKeyCreateFromData") || !isOffered("SecEncryptTransformCreate")) return false;
  Objects objects;
  // The framework is written in C++ and may throw; that counts as refused, too.
  const auto bytes =
      answered(std::optional<Bytes>(), [&] { return encrypt(objects, key, source); });
  // A stream cipher's output is as long as its input; anything else would not fit the destination.
  if (!bytes || bytes->size() != source.size()) return false;
  std::ranges::copy(*bytes, destination);
  return true;
}

}  // namespace wenlolib::platform::apple
