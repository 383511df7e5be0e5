// From plain values to the core's own, and back.
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "objc/Private.h"

static bool nests(const Plain& plain) {
  return plain.kind == plainArray || plain.kind == plainDictionary;
}

/// Goes down to the last item that is left and up again, without memory and without recursion:
/// values may be nested 512 deep.
void plainFree(Plain* plain) {
  plain->around = nullptr;
  while (plain != nullptr) {
    if (nests(*plain) && plain->count > 0) {
      Plain* last = &plain->as.items[--plain->count];
      last->around = plain;
      plain = last;
      continue;
    }
    if (nests(*plain)) std::free(plain->as.items);
    if (plain->kind == plainText) std::free(plain->as.units);
    if (plain->kind == plainData) std::free(plain->as.bytes);
    Plain* around = plain->around;
    *plain = Plain{};
    plain = around;
  }
}

namespace wenlolib::objc {
namespace {

/// The value of anything but an array or a dictionary.
std::optional<Value> scalarIn(const Plain& plain) {
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
    default:
      return std::nullopt;
  }
}

/// An array or a dictionary whose values are being read, one after the other.
class Reading {
 public:
  explicit Reading(const Plain& plain) : plain_(plain), perValue_(isArray() ? 1 : 2) {}

  /// The next value; null if there is none left.
  const Plain* next() {
    if (plain_.count - taken_ < perValue_) return nullptr;
    taken_ += perValue_;
    return &plain_.as.items[taken_ - 1];
  }
  /// Keeps the converted form of the value that `next` returned last.
  void keep(Value value) {
    if (isArray()) return array_.push_back(std::move(value));
    if (Text key = textIn(plain_.as.items[taken_ - 2])) {
      dictionary_.insert_or_assign(*std::move(key), std::move(value));
    }
  }
  Value value() && { return isArray() ? Value(std::move(array_)) : Value(std::move(dictionary_)); }
  Dictionary dictionary() && { return std::move(dictionary_); }

 private:
  [[nodiscard]] bool isArray() const { return plain_.kind == plainArray; }

  const Plain& plain_;
  std::size_t perValue_;
  std::size_t taken_ = 0;
  Value::Array array_;
  Dictionary dictionary_;
};

/// What cannot be read is left out. The levels are kept in a vector, so that deep nesting in what a
/// host passes does not become deep recursion.
Dictionary entriesIn(const Plain& plain) {
  std::vector<Reading> levels;
  levels.emplace_back(plain);
  for (;;) {
    if (const Plain* next = levels.back().next()) {
      if (nests(*next)) {
        levels.emplace_back(*next);
      } else if (std::optional<Value> value = scalarIn(*next)) {
        levels.back().keep(*std::move(value));
      }
      continue;
    }
    if (levels.size() == 1) return std::move(levels.front()).dictionary();
    Value value = std::move(levels.back()).value();
    levels.pop_back();
    levels.back().keep(std::move(value));
  }
}

/// A value, and the plain value to fill from it.
using Pair = std::pair<const Value*, Plain*>;

/// Fills one plain value; the values inside it wait to be filled. False if there is no memory; the
/// plain value then holds what was made before.
class Filling {
 public:
  Filling(Plain& plain, std::vector<Pair>& waiting) : plain_(plain), waiting_(waiting) {}

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
    for (const Value& value : array) waiting_.emplace_back(&value, item++);
    return true;
  }
  bool operator()(const Dictionary& dictionary) const {
    Plain* item = items(plainDictionary, 2 * dictionary.size());
    if (item == nullptr) return false;
    for (const auto& [key, value] : dictionary) {
      if (!Filling(*item++, waiting_)(key)) return false;
      waiting_.emplace_back(&value, item++);
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
  std::vector<Pair>& waiting_;
};

template <class Held>
bool fillAll(Plain& plain, const Held& held) {
  std::vector<Pair> waiting;
  if (!Filling(plain, waiting)(held)) return false;
  while (!waiting.empty()) {
    const auto [value, place] = waiting.back();
    waiting.pop_back();
    if (!value->visit(Filling(*place, waiting))) return false;
  }
  return true;
}

template <class Held>
Plain filled(const Held& held) noexcept {
  Plain plain{};
  if (!answered(false, [&] { return fillAll(plain, held); })) plainFree(&plain);
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
