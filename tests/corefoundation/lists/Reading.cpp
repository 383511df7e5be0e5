#include "Reading.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <stdexcept>

#include "plist/PropertyList.h"
#include "plist/Scalars.h"

namespace wenlolib::tests::lists {
namespace {

using platform::ListState;
using platform::apple::as;
using platform::apple::Owned;

/// The only number type that holds 2^64-1: the others give -1 for it, and say that it fits.
constexpr CFNumberType wideInteger{17};
struct Wide {
  std::int64_t high;
  std::uint64_t low;
};

struct BeyondBounds : std::runtime_error {
  BeyondBounds() : std::runtime_error("beyond the bounds") {}
};

// --- From Core Foundation ---

class Conversion {
 public:
  explicit Conversion(std::size_t bytes) : referencesLeft_(bytes) {}

  /// Nothing for what no value can represent.
  std::optional<Value> value(CFTypeRef object);
  Dictionary dictionary(CFDictionaryRef object);
  [[nodiscard]] bool isPartial() const { return isPartial_; }

 private:
  std::optional<Value> scalar(CFTypeRef object);
  std::optional<Value> text(CFStringRef string);
  Value::Array array(CFArrayRef object);
  void charge(std::size_t contentBytes);
  void enter();

  std::size_t referencesLeft_;
  std::size_t nodesLeft_ = plist::bounds.nodes;
  std::size_t contentBytesLeft_ = plist::bounds.contentBytes;
  std::size_t level_ = 0;
  bool isPartial_ = false;
};

void Conversion::charge(std::size_t contentBytes) {
  if (referencesLeft_ == 0 || nodesLeft_ == 0 || contentBytes > contentBytesLeft_) {
    throw BeyondBounds();
  }
  --referencesLeft_;
  --nodesLeft_;
  contentBytesLeft_ -= contentBytes;
}

void Conversion::enter() {
  if (++level_ > plist::bounds.levels) throw BeyondBounds();
}

Value number(CFNumberRef object) {
  if (CFNumberIsFloatType(object)) {
    double real = 0;
    CFNumberGetValue(object, kCFNumberDoubleType, &real);
    return real;
  }
  Wide wide{};
  CFNumberGetValue(object, wideInteger, &wide);
  if (wide.high == 0) return plist::naturalValue(wide.low);
  return static_cast<std::int64_t>(wide.low);
}

std::optional<Value> Conversion::text(CFStringRef string) {
  const Text text = platform::apple::textOf(string);
  charge(text ? text->size() : 0);
  return text ? std::optional<Value>(*text) : std::nullopt;
}

std::optional<Value> Conversion::scalar(CFTypeRef object) {
  if (const auto* string = as<CFStringRef>(CFStringGetTypeID(), object)) return text(string);
  if (const auto* data = as<CFDataRef>(CFDataGetTypeID(), object)) {
    const auto bytes = platform::apple::bytesOf(data);
    charge(bytes.size());
    return Value::Data(bytes.begin(), bytes.end());
  }
  charge(0);
  if (const auto* flag = as<CFBooleanRef>(CFBooleanGetTypeID(), object)) {
    return CFBooleanGetValue(flag) != 0;
  }
  if (const auto* numeral = as<CFNumberRef>(CFNumberGetTypeID(), object)) return number(numeral);
  const CFTypeID uidType = _CFKeyedArchiverUIDGetTypeID();
  if (const auto* uid = as<CFKeyedArchiverUIDRef>(uidType, object)) {
    return Dictionary{{"CF$UID", plist::naturalValue(_CFKeyedArchiverUIDGetValue(uid))}};
  }
  const auto* date = as<CFDateRef>(CFDateGetTypeID(), object);
  if (date == nullptr) return std::nullopt;
  const Instant instant{Seconds(CFDateGetAbsoluteTime(date) + kCFAbsoluteTimeIntervalSince1970)};
  return plist::isCarriedDate(instant) ? std::optional<Value>(instant) : std::nullopt;
}

Value::Array Conversion::array(CFArrayRef object) {
  Value::Array items;
  for (CFIndex i = 0; i < CFArrayGetCount(object); ++i) {
    if (auto item = value(CFArrayGetValueAtIndex(object, i))) items.push_back(*std::move(item));
  }
  return items;
}

Dictionary Conversion::dictionary(CFDictionaryRef object) {
  enter();
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(object));
  std::vector<const void*> keys(count), values(count);
  CFDictionaryGetKeysAndValues(object, keys.data(), values.data());
  Dictionary entries;
  for (std::size_t i = 0; i < count; ++i) {
    const auto key = scalar(keys[i]);
    auto held = value(values[i]);
    const bool isKey = key && key->text() != nullptr;
    isPartial_ = isPartial_ || !isKey;
    if (isKey && held) entries.insert_or_assign(*key->text(), *std::move(held));
  }
  --level_;
  return entries;
}

std::optional<Value> Conversion::value(CFTypeRef object) {
  if (const auto* held = as<CFDictionaryRef>(CFDictionaryGetTypeID(), object)) {
    charge(0);
    return dictionary(held);
  }
  const auto* held = as<CFArrayRef>(CFArrayGetTypeID(), object);
  if (held == nullptr) {
    auto converted = scalar(object);
    isPartial_ = isPartial_ || !converted;
    return converted;
  }
  charge(0);
  enter();
  auto items = array(held);
  --level_;
  return items;
}

// --- To Core Foundation ---

bool shareContent(const Value& left, const Value& right) {
  const auto of = [](const Value& value) -> const void* {
    return value.array() != nullptr ? static_cast<const void*>(value.array()) : value.dictionary();
  };
  return of(left) != nullptr && of(left) == of(right);
}

/// An array that an array holds twice in a row becomes one object; a dictionary likewise.
void append(CFMutableArrayRef array, const Value::Array& items, const Value& item) {
  const CFIndex count = CFArrayGetCount(array);
  if (count > 0 && shareContent(item, items[static_cast<std::size_t>(count) - 1])) {
    CFArrayAppendValue(array, CFArrayGetValueAtIndex(array, count - 1));
  } else {
    CFArrayAppendValue(array, objectFrom(item).get());
  }
}

struct Maker {
  using Made = Owned<CFPropertyListRef>;

  Made operator()(bool value) const {
    return Made(CFRetain(value ? kCFBooleanTrue : kCFBooleanFalse));
  }
  Made operator()(std::int64_t value) const {
    return Made(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
  }
  Made operator()(std::uint64_t value) const {
    const Wide wide{0, value};
    return Made(CFNumberCreate(nullptr, wideInteger, &wide));
  }
  Made operator()(double value) const {
    return Made(CFNumberCreate(nullptr, kCFNumberDoubleType, &value));
  }
  Made operator()(const std::string& value) const {
    return Made(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(value.data()),
                                        static_cast<CFIndex>(value.size()), kCFStringEncodingUTF8,
                                        false));
  }
  Made operator()(Instant value) const {
    const double seconds = value.time_since_epoch().count();
    return Made(CFDateCreate(nullptr, seconds - kCFAbsoluteTimeIntervalSince1970));
  }
  Made operator()(const Value::Data& value) const {
    return Made(CFDataCreate(nullptr, value.data(), static_cast<CFIndex>(value.size())));
  }
  Made operator()(const Value::Array& items) const {
    auto* array = CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks);
    for (const Value& item : items) append(array, items, item);
    return Made(array);
  }
  Made operator()(const Dictionary& entries) const {
    auto* dictionary = CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                 &kCFTypeDictionaryValueCallBacks);
    for (const auto& [key, value] : entries) {
      CFDictionarySetValue(dictionary, (*this)(key).get(), objectFrom(value).get());
    }
    return Made(dictionary);
  }
};

// --- For people ---

struct Spelling {
  std::string& out;

  void operator()(bool value) const { out += value ? "true" : "false"; }
  void operator()(std::int64_t value) const { out += std::to_string(value); }
  void operator()(std::uint64_t value) const { out += std::to_string(value); }
  void operator()(Instant value) const {
    out += "date ";
    number(value.time_since_epoch().count());
  }
  void operator()(double value) const {
    out += "real ";
    number(value);
  }
  void operator()(const std::string& value) const {
    out += '"';
    for (const char c : value) escaped(c);
    out += '"';
  }
  void operator()(const Value::Data& value) const {
    out += "data ";
    for (const auto byte : value) hexadecimal(byte);
  }
  void operator()(const Value::Array& items) const {
    out += '[';
    for (const Value& item : items) {
      if (&item != items.data()) out += ", ";
      item.visit(*this);
    }
    out += ']';
  }
  void operator()(const Dictionary& entries) const {
    out += '{';
    for (const auto& entry : entries) {
      if (&entry != &*entries.begin()) out += ", ";
      (*this)(entry.first);
      out += ": ";
      entry.second.visit(*this);
    }
    out += '}';
  }

  void number(double value) const {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    out += std::isnan(value) ? "nan" : text;
  }
  void hexadecimal(unsigned char byte) const {
    constexpr char digits[] = "0123456789abcdef";
    out += digits[byte >> 4U];
    out += digits[byte & 15U];
  }
  void escaped(char c) const {
    const bool isPlain = c >= ' ' && c <= '~' && c != '"' && c != '\\';
    if (isPlain) {
      out += c;
    } else {
      out += "\\x";
      hexadecimal(static_cast<unsigned char>(c));
    }
  }
};

}  // namespace

Reading ours(const std::string& bytes) {
  const platform::ListReading read = plist::read(bytes);
  Reading reading;
  reading.state = read.state;
  if (read.dictionary) reading.value = shown(*read.dictionary);
  return reading;
}

Reading theirs(const std::string& bytes) {
  const Owned<CFDataRef> data(platform::apple::dataFrom(
      {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}));
  CFPropertyListFormat format{};
  const Owned<CFPropertyListRef> list(CFPropertyListCreateWithData(
      nullptr, data.get(), kCFPropertyListImmutable, &format, nullptr));
  Reading reading;
  if (!list) return reading;
  reading.isOldForm = format == kCFPropertyListOpenStepFormat;
  reading.state = ListState::otherRoot;
  try {
    Conversion conversion(bytes.size());
    const auto value = conversion.value(list.get());
    if (!value || value->dictionary() == nullptr) return reading;
    reading.state = conversion.isPartial() ? ListState::partial : ListState::whole;
    reading.value = shown(*value);
  } catch (const BeyondBounds&) {
    reading.isBeyondBounds = true;
  }
  return reading;
}

std::string Reading::shown() const {
  if (isRefused()) return "refused";
  if (isBeyondBounds) return "too much";
  if (state == ListState::otherRoot) return "other root";
  return (state == ListState::partial ? "partial " : "") + value;
}

std::string shown(const Value& value) {
  std::string text;
  value.visit(Spelling{text});
  return text;
}

Owned<CFPropertyListRef> objectFrom(const Value& value) {
  return value.visit(Maker());
}

std::string written(CFPropertyListRef list, CFPropertyListFormat format) {
  const Owned<CFDataRef> data(CFPropertyListCreateData(nullptr, list, format, 0, nullptr));
  if (!data) return "";
  const auto bytes = platform::apple::bytesOf(data.get());
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace wenlolib::tests::lists
