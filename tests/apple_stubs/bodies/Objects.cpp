#include "apple_stubs/bodies/Objects.h"

#include <cstdlib>

#include "apple_stubs/bodies/Stubs.h"

namespace wenlolib::tests::stubs {
namespace {

long live = 0;

}  // namespace

long liveObjects() {
  return live;
}

Object::Object(Type of, bool forEver) : type(of), constant(forEver) {
  live += constant ? 0 : 1;
}

Object::~Object() {
  live -= constant ? 0 : 1;
}

Container::~Container() {
  for (const void* item : items) CFRelease(item);
}

Object* object(const void* reference, Type type) {
  auto* found = static_cast<Object*>(const_cast<void*>(reference));
  if (found == nullptr || found->type != type || found->references < 1) std::abort();
  return found;
}

const void* retained(const void* reference) {
  ++static_cast<Object*>(const_cast<void*>(reference))->references;
  return reference;
}

}  // namespace wenlolib::tests::stubs

using wenlolib::tests::stubs::Object;

// Seen: CoreFoundationRecords.EachServiceLeavesNothingBehind.
void CFRelease(CFTypeRef reference) {
  auto* object = static_cast<Object*>(const_cast<void*>(reference));
  if (object->references < 1) std::abort();
  if (--object->references == 0 && !object->constant) delete object;
}

// Seen: AppleUser.HasNoLocaleWhereTheSettingIsNotText.
CFTypeID CFGetTypeID(CFTypeRef reference) {
  return static_cast<const Object*>(reference)->type;
}
