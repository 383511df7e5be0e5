#include "platform/apple/TransformCipher.h"

#include <Security/Security.h>

#include <algorithm>
#include <optional>

#include "platform/apple/Offered.h"
#include "platform/apple/Strings.h"

namespace wenlolib::platform::apple {
namespace {

/// Everything that one encryption makes; whatever was made goes when it ends, however it ends.
struct Objects {
  Owned<CFMutableDictionaryRef> parameters;
  Owned<SecKeyRef> key;
  Owned<SecTransformRef> transform;
  Owned<CFDataRef> keyData;
  Owned<CFDataRef> input;
  Owned<CFTypeRef> result;
  Owned<CFErrorRef> error;
};

bool makeKey(Objects& objects, Bytes key) noexcept {
  objects.parameters = Owned(CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                       &kCFTypeDictionaryValueCallBacks));
  if (objects.parameters) {
    // On purpose: the framework documents kSecAttrKeyType for this, but what is written with this
    // attribute is what every reader of the documents has always seen.
    CFDictionarySetValue(objects.parameters.get(), kSecAttrType, kSecAttrKeyTypeRC4);
  }
  objects.keyData = dataFrom(key);
  if (!objects.parameters || !objects.keyData) return false;
  objects.key = Owned(
      SecKeyCreateFromData(objects.parameters.get(), objects.keyData.get(), objects.error.slot()));
  return !objects.error && objects.key;
}

bool makeTransform(Objects& objects, Bytes source) noexcept {
  objects.transform =
      Owned<SecTransformRef>(SecEncryptTransformCreate(objects.key.get(), objects.error.slot()));
  if (objects.error || !objects.transform) return false;
  objects.input = dataFrom(source);
  if (!objects.input) return false;
  // Only an error counts: the call may answer false for an input that it has taken.
  static_cast<void>(SecTransformSetAttribute(objects.transform.get(),
                                             kSecTransformInputAttributeName, objects.input.get(),
                                             objects.error.slot()));
  return !objects.error;
}

/// The encrypted bytes; nothing where the service refuses at any step. No bytes at all may come as
/// data without any or as no data.
std::optional<Bytes> encrypted(Objects& objects, Bytes key, Bytes source) noexcept {
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
  // Out of date for long. Where the transforms are gone, so is the cipher.
  if (!isOffered("SecKeyCreateFromData") || !isOffered("SecEncryptTransformCreate")) return false;
  Objects objects;
  const std::optional<Bytes> bytes = encrypted(objects, key, source);
  // A stream cipher's output is as long as its input; anything else would not fit the destination.
  if (!bytes || bytes->size() != source.size()) return false;
  std::ranges::copy(*bytes, destination);
  return true;
}

}  // namespace wenlolib::platform::apple
