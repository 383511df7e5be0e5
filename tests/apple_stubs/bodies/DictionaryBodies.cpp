#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

// Only the type-aware callbacks keep references to the entries.
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
  entries->items.push_back(retained(key));
  entries->items.push_back(retained(value));
}
