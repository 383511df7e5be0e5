#include <Security/Security.h>

#include <algorithm>
#include <vector>

#include "apple_stubs/bodies/Stubs.h"
#include "platform/apple/Objects.h"
#include "support/ReferenceCrypto.h"

// The transforms, on whichever Core Foundation stands below them. Keys, transforms and errors are
// dictionaries.

using namespace wenlolib::tests::stubs;
using namespace wenlolib::platform::apple;
using wenlolib::platform::Bytes;

// In functions, because CFSTR may be a statement.
const CFTypeRef kSecAttrType = [] { return CFSTR("type"); }();
const CFTypeRef kSecAttrKeyTypeRC4 = [] { return CFSTR("RC4"); }();
const CFStringRef kSecTransformInputAttributeName = [] { return CFSTR("INPUT"); }();

namespace {

const CFStringRef keyEntry = [] { return CFSTR("KEY"); }();

CFMutableDictionaryRef newObject() {
  return CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                   &kCFTypeDictionaryValueCallBacks);
}

/// Fails a call in the way that the test has chosen. True if the call must return no object.
bool failing(bool isRefused, CFErrorRef* error) {
  if (!isRefused) return false;
  if (world().refusal == Refusal::exception) throw "not a std::exception";
  if (world().refusal != Refusal::noObject) *error = reinterpret_cast<CFErrorRef>(newObject());
  return world().refusal != Refusal::objectAndError;
}

std::string parametersOf(CFDictionaryRef parameters) {
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(parameters));
  std::vector<const void*> keys(count), values(count);
  CFDictionaryGetKeysAndValues(parameters, keys.data(), values.data());
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += *textOf(static_cast<CFStringRef>(keys[i])) + "=" +
            *textOf(static_cast<CFStringRef>(values[i])) + ";";
  }
  return text;
}

Bytes bytesAt(CFTypeRef dictionary, CFStringRef name) {
  return bytesOf(
      static_cast<CFDataRef>(CFDictionaryGetValue(static_cast<CFDictionaryRef>(dictionary), name)));
}

}  // namespace

// Assumed: Security's transforms.
SecKeyRef SecKeyCreateFromData(CFDictionaryRef parameters, CFDataRef keyData, CFErrorRef* error) {
  const bool isRefused = refused("SecKeyCreateFromData");
  const Uncounted own;
  if (failing(isRefused, error)) return nullptr;
  world().keyParameters = parametersOf(parameters);
  CFMutableDictionaryRef key = newObject();
  CFDictionarySetValue(key, keyEntry, keyData);
  return reinterpret_cast<SecKeyRef>(key);
}

// Assumed: Security's transforms.
SecTransformRef SecEncryptTransformCreate(SecKeyRef key, CFErrorRef* error) {
  const bool isRefused = refused("SecEncryptTransformCreate");
  const Uncounted own;
  if (failing(isRefused, error)) return nullptr;
  CFMutableDictionaryRef transform = newObject();
  CFDictionarySetValue(transform, keyEntry, key);
  return transform;
}

// Assumed: Security's transforms.
Boolean SecTransformSetAttribute(SecTransformRef transform, CFStringRef attribute, CFTypeRef value,
                                 CFErrorRef* error) {
  const bool isRefused = refused("SecTransformSetAttribute");
  const Uncounted own;
  if (failing(isRefused, error)) return 0;
  CFDictionarySetValue(static_cast<CFMutableDictionaryRef>(const_cast<void*>(transform)), attribute,
                       value);
  return world().attributeAnswer;
}

// Assumed: Security's transforms.
CFTypeRef SecTransformExecute(SecTransformRef transform, CFErrorRef* error) {
  const bool isRefused = refused("SecTransformExecute");
  const Uncounted own;
  if (failing(isRefused, error)) return nullptr;
  const auto* entries = static_cast<CFDictionaryRef>(transform);
  if (CFDictionaryGetValue(entries, kSecTransformInputAttributeName) == nullptr) return nullptr;
  if (!world().resultIsData) return newObject();
  const Bytes key = bytesAt(CFDictionaryGetValue(entries, keyEntry), keyEntry);
  const Bytes input = bytesAt(transform, kSecTransformInputAttributeName);
  std::vector<std::uint8_t> output(input.size());
  wenlolib::tests::referenceRc4(key, input, output.data());
  const std::size_t length = std::min(world().resultLength, output.size());
  return CFDataCreate(nullptr, output.data(), static_cast<CFIndex>(length));
}
