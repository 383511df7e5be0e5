#include "platform/apple/Numbers.h"
#include "platform/apple/Strings.h"
#include "platform/apple/Values.h"

namespace wenlolib::platform::apple {
namespace {

/// Answers null for what Core Foundation has no object for.
struct Writer {
  Owned<CFTypeRef> operator()(bool value) const {
    return Owned<CFTypeRef>(CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse));
  }
  Owned<CFTypeRef> operator()(std::int64_t value) const { return numberFrom(value); }
  Owned<CFTypeRef> operator()(std::uint64_t value) const { return numberFrom(value); }
  Owned<CFTypeRef> operator()(double value) const { return numberFrom(value); }
  Owned<CFTypeRef> operator()(const std::string& value) const { return stringFrom(value); }
  Owned<CFTypeRef> operator()(const Value::Data& value) const { return dataFrom(value); }
  Owned<CFTypeRef> operator()(Instant value) const {
    const double seconds = value.time_since_epoch().count();
    return Owned<CFTypeRef>(CFDateCreate(nullptr, seconds - kCFAbsoluteTimeIntervalSince1970));
  }
  Owned<CFTypeRef> operator()(const Value::Array& value) const;
  Owned<CFTypeRef> operator()(const Dictionary& value) const;
};

Owned<CFTypeRef> Writer::operator()(const Value::Array& value) const {
  Owned<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks));
  if (!array) return {};
  for (const Value& item : value) {
    const Owned<CFTypeRef> object = item.visit(*this);
    if (!object) return {};
    CFArrayAppendValue(array.get(), object.get());
  }
  return array;
}

Owned<CFTypeRef> Writer::operator()(const Dictionary& value) const {
  Owned<CFMutableDictionaryRef> dictionary(CFDictionaryCreateMutable(
      nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  if (!dictionary) return {};
  for (const auto& [key, held] : value) {
    const Owned<CFStringRef> name = stringFrom(key);
    const Owned<CFTypeRef> object = held.visit(*this);
    if (!name || !object) return {};
    CFDictionarySetValue(dictionary.get(), name.get(), object.get());
  }
  return dictionary;
}

}  // namespace

Owned<CFTypeRef> objectFrom(const Dictionary& dictionary) {
  return Writer()(dictionary);
}

}  // namespace wenlolib::platform::apple
