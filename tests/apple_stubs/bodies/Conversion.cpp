#include "apple_stubs/bodies/Conversion.h"

#include <cstdlib>
#include <type_traits>

namespace wenlolib::tests::stubs {
namespace {

constexpr const char* uidKey = "CF$UID";

/// The number in a dictionary that is read as a UID; negative for any other.
double uidIn(const Dictionary& dictionary) {
  double uid = -1;
  if (dictionary.size() != 1 || dictionary.begin()->first != uidKey) return uid;
  dictionary.begin()->second.visit([&](const auto& held) {
    using Held = std::decay_t<decltype(held)>;
    if constexpr (std::is_same_v<Held, std::int64_t>) uid = static_cast<double>(held);
  });
  return uid;
}

struct Maker {
  CFTypeRef operator()(bool value) const {
    return CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse);
  }
  CFTypeRef operator()(std::int64_t value) const {
    auto* number = new NumberObject;
    number->integer = value;
    return reference<CFTypeRef>(number);
  }
  CFTypeRef operator()(std::uint64_t value) const {
    auto* number = new NumberObject;
    number->isUnsigned = true;
    number->natural = value;
    return reference<CFTypeRef>(number);
  }
  CFTypeRef operator()(double value) const {
    auto* number = new NumberObject;
    number->isReal = true;
    number->real = value;
    return reference<CFTypeRef>(number);
  }
  CFTypeRef operator()(const std::string& value) const {
    return reference<CFTypeRef>(new StringObject(value));
  }
  CFTypeRef operator()(Instant value) const {
    return reference<CFTypeRef>(new PlainObject(
        dateType, value.time_since_epoch().count() - kCFAbsoluteTimeIntervalSince1970));
  }
  CFTypeRef operator()(const Value::Data& value) const {
    return reference<CFTypeRef>(new DataObject(value.data(), static_cast<CFIndex>(value.size())));
  }
  CFTypeRef operator()(const Value::Array& value) const {
    auto* array = new Container(arrayType);
    for (const Value& item : value) array->items.push_back(made(item));
    return reference<CFTypeRef>(array);
  }
  CFTypeRef operator()(const Dictionary& value) const {
    const double uid = uidIn(value);
    if (uid >= 0) return reference<CFTypeRef>(new PlainObject(uidType, uid));
    auto* dictionary = new Container(dictionaryType);
    for (const auto& [key, held] : value) {
      dictionary->items.push_back(reference<CFTypeRef>(new StringObject(key)));
      dictionary->items.push_back(made(held));
    }
    return reference<CFTypeRef>(dictionary);
  }
};

Value numberBehind(CFTypeRef object) {
  const auto* number = behind<NumberObject>(object, numberType);
  if (number->isReal) return number->real;
  if (number->isUnsigned) return number->natural;
  return number->integer;
}

Value dictionaryBehind(CFTypeRef object) {
  Dictionary dictionary;
  const auto& items = behind<Container>(object, dictionaryType)->items;
  for (std::size_t i = 0; i < items.size(); i += 2) {
    dictionary.emplace(behind<StringObject>(items[i], stringType)->text, valueBehind(items[i + 1]));
  }
  return dictionary;
}

}  // namespace

CFTypeRef made(const Value& value) {
  return value.visit(Maker());
}

Value valueBehind(CFTypeRef object) {
  switch (CFGetTypeID(object)) {
    case booleanType:
      return behind<PlainObject>(object, booleanType)->number != 0;
    case numberType:
      return numberBehind(object);
    case stringType:
      return behind<StringObject>(object, stringType)->text;
    case dateType:
      return Instant(Seconds(behind<PlainObject>(object, dateType)->number +
                             kCFAbsoluteTimeIntervalSince1970));
    case dataType:
      return behind<DataObject>(object, dataType)->bytes;
    case arrayType: {
      Value::Array array;
      for (const void* item : behind<Container>(object, arrayType)->items) {
        array.push_back(valueBehind(item));
      }
      return array;
    }
    case dictionaryType:
      return dictionaryBehind(object);
    case uidType: {
      const double uid = behind<PlainObject>(object, uidType)->number;
      return Dictionary{{uidKey, static_cast<std::int64_t>(uid)}};
    }
    default:
      std::abort();
  }
}

}  // namespace wenlolib::tests::stubs
