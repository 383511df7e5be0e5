#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeID CFArrayGetTypeID() {
  return arrayType;
}

// Other callbacks than the type-aware ones would keep no reference to the items.
CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                       const CFArrayCallBacks* callBacks) {
  if (refused("CFArrayCreateMutable") || callBacks != &kCFTypeArrayCallBacks) return nullptr;
  return reference<CFMutableArrayRef>(new Container(arrayType));
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
  behind<Container>(array, arrayType)->items.push_back(CFRetain(value));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(behind<Container>(array, arrayType)->items.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return behind<Container>(array, arrayType)->items.at(static_cast<std::size_t>(index));
}

CFTypeID CFDictionaryGetTypeID() {
  return dictionaryType;
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  if (refused("CFDictionaryCreateMutable") || keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    return nullptr;
  }
  return reference<CFMutableDictionaryRef>(new Container(dictionaryType));
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  auto* entries = behind<Container>(dictionary, dictionaryType);
  entries->items.push_back(CFRetain(key));
  entries->items.push_back(CFRetain(value));
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(behind<Container>(dictionary, dictionaryType)->items.size() / 2);
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  const auto& items = behind<Container>(dictionary, dictionaryType)->items;
  for (std::size_t i = 0; i < items.size(); i += 2) {
    *keys++ = items[i];
    *values++ = items[i + 1];
  }
}
