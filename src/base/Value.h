/// The values that dictionaries and property lists hold.
#ifndef WENLOLIB_BASE_VALUE_H
#define WENLOLIB_BASE_VALUE_H

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "Instant.h"

namespace wenlolib {

class Value;

/// Entries by key. Keys are exact and case-sensitive.
using Dictionary = std::map<std::string, Value, std::less<>>;

/// One value of a dictionary: a boolean, a signed or unsigned 64-bit integer, a double, a text in
/// UTF-8, a date, data, an array or a dictionary. A value never changes once it is made; copies
/// share what they hold, need no memory and never throw. Making one from a text, data, an array or
/// a dictionary takes memory: where there is none std::bad_alloc is thrown, in the host's own code.
/// Safe to read from several threads.
class Value {
 public:
  using Data = std::vector<std::uint8_t>;
  using Array = std::vector<Value>;

  /// Only a `bool` makes a boolean: a pointer or a string literal must not turn into one.
  template <std::same_as<bool> Boolean>
  Value(Boolean value) : held_(value) {}
  template <std::signed_integral Integer>
  Value(Integer value) : held_(static_cast<std::int64_t>(value)) {}
  template <std::unsigned_integral Integer>
  requires(!std::same_as<Integer, bool>) Value(Integer value)
      : held_(static_cast<std::uint64_t>(value)) {}
  Value(double value) : held_(value) {}
  Value(Instant value) : held_(value) {}
  /// `value` must not be null.
  Value(const char* value) : Value(std::string(value)) {}
  Value(std::string value) : held_(boxed(std::move(value))) {}
  Value(Data value) : held_(boxed(std::move(value))) {}
  Value(Array value) : held_(boxed(std::move(value))) {}
  inline Value(Dictionary value);

  /// The text, date, data, array or dictionary held, or null where the value is of another type.
  /// The pointer is good for as long as this value.
  [[nodiscard]] const std::string* text() const { return unboxed<std::string>(); }
  [[nodiscard]] const Instant* date() const { return std::get_if<Instant>(&held_); }
  [[nodiscard]] const Data* data() const { return unboxed<Data>(); }
  [[nodiscard]] const Array* array() const { return unboxed<Array>(); }
  [[nodiscard]] const Dictionary* dictionary() const { return unboxed<Dictionary>(); }

  /// The boolean reading of a number: a boolean as it is, any other number true unless it is zero.
  /// Nothing where the value is no number.
  [[nodiscard]] inline std::optional<bool> truth() const;

  /// Calls `visitor` with what is held: a bool, std::int64_t, std::uint64_t, double, std::string,
  /// Instant, Data, Array or Dictionary.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit([&](const auto& held) -> decltype(auto) { return visitor(bare(held)); },
                      held_);
  }

  /// Same type and same value, all the way down. A signed and an unsigned integer differ.
  friend inline bool operator==(const Value& left, const Value& right);

 private:
  // Everything that takes memory is boxed: a variant whose copy can throw half-way is not safe in
  // every standard library (libstdc++ 12 destroys what was never made).
  template <class Held>
  using Box = std::shared_ptr<const Held>;

  template <class Held>
  static Box<Held> boxed(Held value) {
    return std::make_shared<const Held>(std::move(value));
  }
  template <class Held>
  [[nodiscard]] const Held* unboxed() const {
    const auto* box = std::get_if<Box<Held>>(&held_);
    return box == nullptr ? nullptr : box->get();
  }
  template <class Held>
  static const Held& bare(const Held& held) {
    return held;
  }
  template <class Held>
  static const Held& bare(const Box<Held>& box) {
    return *box;
  }

  std::variant<bool, std::int64_t, std::uint64_t, double, Instant, Box<std::string>, Box<Data>,
               Box<Array>, Box<Dictionary>>
      held_;
};

Value::Value(Dictionary value) : held_(boxed(std::move(value))) {}

std::optional<bool> Value::truth() const {
  if (const auto* flag = std::get_if<bool>(&held_)) return *flag;
  if (const auto* integer = std::get_if<std::int64_t>(&held_)) return *integer != 0;
  if (const auto* natural = std::get_if<std::uint64_t>(&held_)) return *natural != 0;
  if (const auto* real = std::get_if<double>(&held_)) return *real != 0;
  return std::nullopt;
}

bool operator==(const Value& left, const Value& right) {
  return left.visit([&](const auto& mine) {
    return right.visit([&](const auto& other) {
      if constexpr (std::is_same_v<decltype(mine), decltype(other)>) {
        return mine == other;
      } else {
        return false;
      }
    });
  });
}

}  // namespace wenlolib

#endif
