/// Objects and values, made without asking the code under test.
#ifndef WENLOLIB_TESTS_APPLE_STUBS_BODIES_CONVERSION_H
#define WENLOLIB_TESTS_APPLE_STUBS_BODIES_CONVERSION_H

#include "apple_stubs/bodies/Objects.h"
#include "base/Value.h"

namespace wenlolib::tests::stubs {

/// A new object, which the caller has to give back. Not written down as a call, never refused. A
/// dictionary that stands for a UID becomes an object of that type, as wherever a list is read.
CFTypeRef made(const Value& value);

Value valueBehind(CFTypeRef object);

}  // namespace wenlolib::tests::stubs

#endif
