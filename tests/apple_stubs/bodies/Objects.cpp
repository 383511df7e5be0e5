#include "apple_stubs/bodies/Objects.h"

#include <cstdlib>

#include "apple_stubs/bodies/Stubs.h"

namespace wenlolib::tests::stubs {
namespace {

long live = 0;
World theWorld;

}  // namespace

bool isWorldReady = false;

World& world() {
  return theWorld;
}

void reset() {
  theWorld = World();
  isWorldReady = true;
}

long liveObjects() {
  return live;
}

bool refused(const char* call) {
  theWorld.calls.emplace_back(call);
  return theWorld.refusedCall == theWorld.calls.size() - 1;
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

PlainObject::~PlainObject() {
  if (other != nullptr) CFRelease(other);
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

void CFRelease(CFTypeRef reference) {
  auto* object = static_cast<Object*>(const_cast<void*>(reference));
  if (object->references < 1) std::abort();
  if (--object->references == 0 && !object->constant) delete object;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
  return static_cast<const Object*>(reference)->type;
}
