#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;

const CFBooleanRef kCFBooleanTrue = reference<CFBooleanRef>(new PlainObject(booleanType, 1, true));
const CFBooleanRef kCFBooleanFalse = reference<CFBooleanRef>(new PlainObject(booleanType, 0, true));
const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

CFTypeID CFBooleanGetTypeID() {
  return booleanType;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  return behind<PlainObject>(boolean, booleanType)->number != 0;
}

CFTypeID CFNumberGetTypeID() {
  return numberType;
}

CFNumberRef CFNumberCreate(CFAllocatorRef /*allocator*/, CFNumberType type, const void* value) {
  if (refused("CFNumberCreate")) return nullptr;
  auto* number = new NumberObject;
  number->isReal = type == kCFNumberDoubleType;
  if (number->isReal) {
    number->real = *static_cast<const double*>(value);
  } else {
    number->integer = *static_cast<const int64_t*>(value);
  }
  return reference<CFNumberRef>(number);
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  return behind<NumberObject>(number, numberType)->isReal;
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const auto* held = behind<NumberObject>(number, numberType);
  if (type == kCFNumberDoubleType) {
    *static_cast<double*>(value) = held->real;
    return held->isReal;
  }
  *static_cast<int64_t*>(value) = held->integer;
  return !held->isReal && !held->isUnsigned;
}

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  return world().now - kCFAbsoluteTimeIntervalSince1970;
}

CFTypeID CFDateGetTypeID() {
  return dateType;
}

CFDateRef CFDateCreate(CFAllocatorRef /*allocator*/, CFAbsoluteTime time) {
  if (refused("CFDateCreate")) return nullptr;
  return reference<CFDateRef>(new PlainObject(dateType, time));
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  return behind<PlainObject>(date, dateType)->number;
}
