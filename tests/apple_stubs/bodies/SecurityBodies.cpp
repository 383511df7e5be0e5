#include <Security/Security.h>
#include <mbedtls/arc4.h>

#include <algorithm>

#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFTypeRef kSecAttrType = stubConstantString("type");
const CFTypeRef kSecAttrKeyTypeRC4 = stubConstantString("RC4");
const CFStringRef kSecTransformInputAttributeName = stubConstantString("INPUT");

namespace {

const std::string& textBehind(const void* string) {
  return behind<StringObject>(string, stringType)->text;
}

/// Fails a call in the way that the test has chosen. True if the call must return no object.
bool failing(const char* call, CFErrorRef* error) {
  if (!refused(call)) return false;
  if (world().refusal != Refusal::noObject) {
    *error = reference<CFErrorRef>(new PlainObject(errorType));
  }
  return world().refusal != Refusal::objectAndError;
}

}  // namespace

SecKeyRef SecKeyCreateFromData(CFDictionaryRef parameters, CFDataRef keyData, CFErrorRef* error) {
  if (failing("SecKeyCreateFromData", error)) return nullptr;
  const auto& items = behind<Container>(parameters, dictionaryType)->items;
  for (std::size_t i = 0; i < items.size(); i += 2) {
    world().keyParameters += textBehind(items[i]) + "=" + textBehind(items[i + 1]) + ";";
  }
  auto* key = new PlainObject(keyType);
  key->other = retained(keyData);
  return reference<SecKeyRef>(key);
}

SecTransformRef SecEncryptTransformCreate(SecKeyRef key, CFErrorRef* error) {
  if (failing("SecEncryptTransformCreate", error)) return nullptr;
  auto* transform = new Container(transformType);
  transform->items.push_back(retained(key));
  return reference<SecTransformRef>(transform);
}

Boolean SecTransformSetAttribute(SecTransformRef transform, CFStringRef attribute, CFTypeRef value,
                                 CFErrorRef* error) {
  if (failing("SecTransformSetAttribute", error)) return 0;
  if (attribute != kSecTransformInputAttributeName) return 0;
  behind<Container>(transform, transformType)->items.push_back(retained(value));
  return world().attributeAnswer;
}

CFTypeRef SecTransformExecute(SecTransformRef transform, CFErrorRef* error) {
  if (failing("SecTransformExecute", error)) return nullptr;
  const auto& items = behind<Container>(transform, transformType)->items;
  if (items.size() != 2) return nullptr;
  if (!world().resultIsData) return reference<CFTypeRef>(new PlainObject(errorType));
  const auto* key = behind<PlainObject>(items[0], keyType);
  const auto& keyBytes = behind<DataObject>(key->other, dataType)->bytes;
  const auto& input = behind<DataObject>(items[1], dataType)->bytes;
  auto* output = new DataObject(input.data(), static_cast<CFIndex>(input.size()));
  mbedtls_arc4_context context;
  mbedtls_arc4_init(&context);
  mbedtls_arc4_setup(&context, keyBytes.data(), static_cast<unsigned>(keyBytes.size()));
  mbedtls_arc4_crypt(&context, input.size(), input.data(), output->bytes.data());
  output->bytes.resize(std::min(world().resultLength, input.size()));
  return reference<CFTypeRef>(output);
}
