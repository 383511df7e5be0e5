/// The objects that Core Foundation's references point to in the tests.
#ifndef WENLOLIB_TESTS_APPLE_STUBS_BODIES_OBJECTS_H
#define WENLOLIB_TESTS_APPLE_STUBS_BODIES_OBJECTS_H

#include <CoreFoundation/CoreFoundation.h>

#include <string>
#include <utility>
#include <vector>

namespace wenlolib::tests::stubs {

enum Type : CFTypeID {
  stringType = 1,
  dataType,
  dictionaryType,
  numberType,
  uuidType,
  calendarType,
  zoneType
};

/// Counted while it lives, unless it is a constant.
struct Object {
  explicit Object(Type of, bool forEver = false);
  virtual ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  const Type type;
  const bool constant;
  long references = 1;
};

struct StringObject : Object {
  explicit StringObject(std::string characters, bool forEver = false)
      : Object(stringType, forEver), text(std::move(characters)) {}
  const std::string text;
};

struct DataObject : Object {
  DataObject(const UInt8* first, CFIndex length) : Object(dataType), bytes(first, first + length) {}
  std::vector<UInt8> bytes;
};

/// Holds a reference to each of its items; a dictionary's keys and values take turns.
struct Container : Object {
  explicit Container(Type of) : Object(of) {}
  ~Container() override;
  std::vector<const void*> items;
};

/// An object that holds only a number or a text.
struct PlainObject : Object {
  explicit PlainObject(Type of, double held = 0) : Object(of), number(held) {}
  PlainObject(Type of, std::string held) : Object(of), text(std::move(held)) {}
  double number = 0;
  std::string text;
};

/// The object that a reference points to. Ends the test program if its type is another one.
Object* object(const void* reference, Type type);

template <class Kind>
Kind* behind(const void* reference, Type type) {
  return static_cast<Kind*>(object(reference, type));
}

/// Adds a reference to the object, and returns it.
const void* retained(const void* reference);

/// The reference to a new object.
template <class Reference, class Made>
Reference reference(Made* made) {
  return reinterpret_cast<Reference>(static_cast<Object*>(made));
}

}  // namespace wenlolib::tests::stubs

#endif
