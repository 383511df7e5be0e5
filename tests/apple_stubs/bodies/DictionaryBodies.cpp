#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

// Only the type-aware callbacks keep references to the entries.
// Seen: TransformCipher.NamesTheCipherUnderTheTypeAttribute.
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  if (refused("CFDictionaryCreateMutable") || keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    return nullptr;
  }
  return reference<CFMutableDictionaryRef>(new Container(dictionaryType));
}

// Seen: TransformCipher.NamesTheCipherUnderTheTypeAttribute.
void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  auto* entries = behind<Container>(dictionary, dictionaryType);
  entries->items.push_back(retained(key));
  entries->items.push_back(retained(value));
}

// Seen: TransformCipher.NamesTheCipherUnderTheTypeAttribute.
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  return static_cast<CFIndex>(behind<Container>(dictionary, dictionaryType)->items.size() / 2);
}

// Seen: TransformCipher.NamesTheCipherUnderTheTypeAttribute.
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  const auto& items = behind<Container>(dictionary, dictionaryType)->items;
  for (std::size_t i = 0; i < items.size(); i += 2) {
    keys[i / 2] = items[i];
    values[i / 2] = items[i + 1];
  }
}

// Seen: TransformCipher.Encrypts.
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  const auto& items = behind<Container>(dictionary, dictionaryType)->items;
  for (std::size_t i = 0; i < items.size(); i += 2) {
    if (items[i] == key) return items[i + 1];
  }
  return nullptr;
}
