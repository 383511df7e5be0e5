#include "platform/apple/Values.h"

#include <vector>

#include "platform/apple/Numbers.h"
#include "platform/apple/Strings.h"
#include "platform/apple/UidEntries.h"

namespace wenlolib::platform::apple {
namespace {

/// What it takes to convert an object that has to be asked for its XML form, in plain values.
constexpr std::size_t uidCost = 64;

/// What becomes of an object that no public call opens.
enum class Unknown { asUid, fails };

/// Each step answers nothing once the whole cannot be converted.
class Reader {
 public:
  Reader(ValueBounds bounds, Unknown unknown) : bounds_(bounds), unknown_(unknown) {}

  std::optional<Value> value(CFTypeRef object);
  /// Where `isWhole` is not asked for, entries that cannot be converted are left out.
  std::optional<Dictionary> dictionary(CFDictionaryRef dictionary, bool isWhole);

 private:
  /// One level further down while it lives.
  struct Inside {
    explicit Inside(std::size_t& of) : level(of) { ++level; }
    ~Inside() { --level; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
    std::size_t& level;
  };

  std::optional<Value> array(CFArrayRef array);
  std::optional<Dictionary> uid(CFTypeRef object);
  [[nodiscard]] bool isAtBottom() const { return level_ >= bounds_.levels; }

  ValueBounds bounds_;
  Unknown unknown_;
  std::size_t level_ = 0;
};

std::optional<Value> Reader::value(CFTypeRef object) {
  if (object == nullptr || bounds_.values == 0) return std::nullopt;
  --bounds_.values;
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFBooleanGetTypeID()) {
    return Value(CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0);
  }
  if (type == CFNumberGetTypeID()) return valueOf(static_cast<CFNumberRef>(object));
  if (type == CFStringGetTypeID()) {
    Text text = textOf(static_cast<CFStringRef>(object));
    return text ? std::optional<Value>(std::move(*text)) : std::nullopt;
  }
  if (type == CFDateGetTypeID()) {
    const double seconds = CFDateGetAbsoluteTime(static_cast<CFDateRef>(object));
    return Value(Instant(Seconds(seconds + kCFAbsoluteTimeIntervalSince1970)));
  }
  if (type == CFDataGetTypeID()) {
    const Bytes bytes = bytesOf(static_cast<CFDataRef>(object));
    return Value(Value::Data(bytes.begin(), bytes.end()));
  }
  if (type == CFArrayGetTypeID()) return array(static_cast<CFArrayRef>(object));
  auto entries = type == CFDictionaryGetTypeID()
                     ? dictionary(static_cast<CFDictionaryRef>(object), true)
                     : uid(object);
  return entries ? std::optional<Value>(std::move(*entries)) : std::nullopt;
}

std::optional<Value> Reader::array(CFArrayRef array) {
  if (isAtBottom()) return std::nullopt;
  const Inside inside(level_);
  Value::Array items;
  const CFIndex count = CFArrayGetCount(array);
  for (CFIndex i = 0; i < count; ++i) {
    auto item = value(CFArrayGetValueAtIndex(array, i));
    if (!item) return std::nullopt;
    items.push_back(std::move(*item));
  }
  return Value(std::move(items));
}

std::optional<Dictionary> Reader::dictionary(CFDictionaryRef dictionary, bool isWhole) {
  if (isAtBottom()) return std::nullopt;
  const Inside inside(level_);
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  Dictionary entries;
  for (std::size_t i = 0; i < count; ++i) {
    Text key = textOf(as<CFStringRef>(CFStringGetTypeID(), keys[i]));
    auto held = value(values[i]);
    if (key && held) {
      entries.emplace(std::move(*key), std::move(*held));
    } else if (isWhole) {
      return std::nullopt;
    }
  }
  return entries;
}

std::optional<Dictionary> Reader::uid(CFTypeRef object) {
  if (unknown_ == Unknown::fails || isAtBottom() || bounds_.values < uidCost) return std::nullopt;
  bounds_.values -= uidCost;
  return uidEntryOf(object);
}

}  // namespace

std::optional<Dictionary> dictionaryOf(CFTypeRef object, ValueBounds bounds) {
  const auto* dictionary = as<CFDictionaryRef>(CFDictionaryGetTypeID(), object);
  if (dictionary != nullptr) return Reader(bounds, Unknown::asUid).dictionary(dictionary, true);
  // One UID entry and nothing else is no dictionary to Core Foundation.
  const auto alone = Reader(bounds, Unknown::asUid).value(object);
  const Dictionary* entry = alone ? alone->dictionary() : nullptr;
  return entry == nullptr ? std::nullopt : std::optional(*entry);
}

std::optional<Dictionary> convertibleEntriesOf(CFTypeRef object, ValueBounds bounds) {
  const auto* dictionary = as<CFDictionaryRef>(CFDictionaryGetTypeID(), object);
  if (dictionary == nullptr) return std::nullopt;
  return Reader(bounds, Unknown::fails).dictionary(dictionary, false);
}

}  // namespace wenlolib::platform::apple
