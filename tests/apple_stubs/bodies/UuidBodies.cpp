#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

// Seen: AppleServices.MakeRandomIdentifiers.
CFUUIDRef CFUUIDCreate(CFAllocatorRef /*allocator*/) {
  if (refused("CFUUIDCreate")) return nullptr;
  return reference<CFUUIDRef>(new PlainObject(uuidType, "3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63"));
}

// Seen: AppleServices.MakeRandomIdentifiers.
CFStringRef CFUUIDCreateString(CFAllocatorRef /*allocator*/, CFUUIDRef uuid) {
  if (refused("CFUUIDCreateString")) return nullptr;
  return reference<CFStringRef>(new StringObject(behind<PlainObject>(uuid, uuidType)->text));
}
