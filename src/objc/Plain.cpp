// Plain values and the core's own, both ways.
#include <cstdlib>
#include <cstring>
#include <span>
#include <utility>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "objc/Private.h"
#include "objc/Unicode.h"

void plainFree(Plain* plain) {
  switch (plain->kind) {
    case plainText:
      std::free(plain->as.units);
      break;
    case plainData:
      std::free(plain->as.bytes);
      break;
    case plainArray:
    case plainDictionary:
      for (std::size_t i = 0; i < plain->count; ++i) plainFree(&plain->as.items[i]);
      std::free(plain->as.items);
      break;
    default:
      break;
  }
  *plain = Plain{};
}

namespace wenlolib::objc {
namespace {

std::optional<Value> valueIn(const Plain& plain);

std::span<const Plain> itemsOf(const Plain& plain) {
  return {plain.as.items, plain.count};
}

Value::Array arrayIn(const Plain& plain) {
  Value::Array array;
  for (const Plain& item : itemsOf(plain)) {
    if (std::optional<Value> value = valueIn(item)) array.push_back(*std::move(value));
  }
  return array;
}

Dictionary entriesIn(const Plain& plain) {
  Dictionary dictionary;
  const std::span<const Plain> items = itemsOf(plain);
  for (std::size_t i = 0; i + 1 < items.size(); i += 2) {
    Text key = textIn(items[i]);
    std::optional<Value> value = valueIn(items[i + 1]);
    if (key && value) dictionary.insert_or_assign(*std::move(key), *std::move(value));
  }
  return dictionary;
}

std::optional<Value> valueIn(const Plain& plain) {
  switch (plain.kind) {
    case plainBoolean:
      return Value(plain.as.integer != 0);
    case plainInteger:
      return Value(plain.as.integer);
    case plainNatural:
      return Value(plain.as.natural);
    case plainReal:
      return Value(plain.as.real);
    case plainDate:
      return Value(Instant(Seconds(plain.as.real)));
    case plainText: {
      Text text = textIn(plain);
      return text ? std::optional<Value>(*std::move(text)) : std::nullopt;
    }
    case plainData:
      return Value(Value::Data(plain.as.bytes, plain.as.bytes + plain.count));
    case plainArray:
      return Value(arrayIn(plain));
    case plainDictionary:
      return Value(entriesIn(plain));
    default:
      return std::nullopt;
  }
}

/// Fills one plain value. False where there is no memory; what was made until then is in it.
class Filling {
 public:
  explicit Filling(Plain& plain) : plain_(plain) {}

  bool operator()(bool value) const { return set(plainBoolean).integer = value, true; }
  bool operator()(std::int64_t value) const { return set(plainInteger).integer = value, true; }
  bool operator()(std::uint64_t value) const { return set(plainNatural).natural = value, true; }
  bool operator()(double value) const { return set(plainReal).real = value, true; }
  bool operator()(Instant value) const {
    set(plainDate).real = value.time_since_epoch().count();
    return true;
  }
  bool operator()(const std::string& text) const {
    if (!isUtf8(text)) return true;  // stays nothing
    auto* units = taken<std::uint16_t>(text.size());
    if (units == nullptr) return false;
    set(plainText, utf16From(text, units)).units = units;
    return true;
  }
  bool operator()(const Value::Data& data) const {
    auto* bytes = taken<std::uint8_t>(data.size());
    if (bytes == nullptr) return false;
    if (!data.empty()) std::memcpy(bytes, data.data(), data.size());
    set(plainData, data.size()).bytes = bytes;
    return true;
  }
  bool operator()(const Value::Array& array) const {
    Plain* item = items(plainArray, array.size());
    if (item == nullptr) return false;
    for (const Value& value : array) {
      if (!value.visit(Filling(*item++))) return false;
    }
    return true;
  }
  bool operator()(const Dictionary& dictionary) const {
    Plain* item = items(plainDictionary, 2 * dictionary.size());
    if (item == nullptr) return false;
    for (const auto& [key, value] : dictionary) {
      if (!Filling(*item++)(key) || !value.visit(Filling(*item++))) return false;
    }
    return true;
  }

 private:
  decltype(Plain::as)& set(PlainKind kind, std::size_t count = 0) const {
    plain_.kind = kind;
    plain_.count = count;
    return plain_.as;
  }
  template <class Held>
  static Held* taken(std::size_t count) {
    return static_cast<Held*>(std::calloc(count + 1, sizeof(Held)));
  }
  [[nodiscard]] Plain* items(PlainKind kind, std::size_t count) const {
    auto* items = taken<Plain>(count);
    if (items != nullptr) set(kind, count).items = items;
    return items;
  }

  Plain& plain_;
};

template <class Held>
Plain filled(const Held& held) noexcept {
  Plain plain{};
  if (!Filling(plain)(held)) plainFree(&plain);
  return plain;
}

}  // namespace

Text textIn(const Plain& plain) {
  if (plain.kind != plainText) return std::nullopt;
  return utf8From({plain.as.units, plain.count});
}

std::optional<Dictionary> dictionaryIn(const Plain& plain) {
  if (plain.kind != plainDictionary) return std::nullopt;
  return entriesIn(plain);
}

Plain plain(const Text& text) noexcept {
  return text ? filled(*text) : Plain{};
}

Plain plain(const std::optional<Dictionary>& dictionary) noexcept {
  return dictionary ? filled(*dictionary) : Plain{};
}

Plain plainBytes(std::string_view bytes) noexcept {
  Plain plain{};
  plain.as.bytes = static_cast<std::uint8_t*>(std::malloc(bytes.size() + 1));
  if (plain.as.bytes == nullptr) return Plain{};
  std::memcpy(plain.as.bytes, bytes.data(), bytes.size());
  plain.kind = plainData;
  plain.count = bytes.size();
  return plain;
}

}  // namespace wenlolib::objc
