/// The values that dictionaries and property lists hold.
#ifndef WENLOLIB_VALUE_H
#define WENLOLIB_VALUE_H

#include <algorithm>
#include <atomic>
#include <concepts>
#include <cstddef>
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
/// UTF-8, a date, data, an array or a dictionary. A value never changes once it is made. Copies
/// share what they hold, need no memory and never throw. Making a value from a text, data, an array
/// or a dictionary takes memory; if there is none, std::bad_alloc is thrown, in the host's own
/// code. Several threads may read a value at the same time. Values are copied, released and
/// compared without recursion, so arrays and dictionaries may be nested to any depth, on any stack.
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
  inline Value(Array value);
  inline Value(Dictionary value);

  Value(const Value&) noexcept = default;
  Value(Value&&) noexcept = default;
  /// Takes a copy: the assigned value may lie inside the value that the assignment releases.
  Value& operator=(Value other) noexcept {
    held_.swap(other.held_);
    return *this;
  }
  ~Value() = default;

  /// The text, date, data, array or dictionary held, or null if the value is of another type. The
  /// pointer is valid as long as this value.
  [[nodiscard]] const std::string* text() const { return unboxed<std::string>(); }
  [[nodiscard]] const Instant* date() const { return std::get_if<Instant>(&held_); }
  [[nodiscard]] const Data* data() const { return unboxed<Data>(); }
  [[nodiscard]] const Array* array() const { return nested<Array>(); }
  [[nodiscard]] const Dictionary* dictionary() const { return nested<Dictionary>(); }

  /// The truth value of a boolean or a number; a number is true unless it is zero. Nothing if the
  /// value is neither.
  [[nodiscard]] inline std::optional<bool> truth() const;

  /// Calls `visitor` with what is held: a bool, std::int64_t, std::uint64_t, double, std::string,
  /// Instant, Data, Array or Dictionary.
  template <class Visitor>
  decltype(auto) visit(Visitor&& visitor) const {
    return std::visit([&](const auto& held) -> decltype(auto) { return visitor(bare(held)); },
                      held_);
  }

  /// Same type and same value, all the way down. A signed and an unsigned integer differ. Comparing
  /// arrays and dictionaries takes memory; if there is none, std::bad_alloc is thrown.
  friend inline bool operator==(const Value& left, const Value& right);

 private:
  // Everything that takes memory is boxed: a variant whose copy can throw half-way is not safe in
  // every standard library (libstdc++ 12 destroys what was never made). Arrays and dictionaries
  // have a count of their own, because std::shared_ptr would release them by recursion.
  template <class Held>
  using Box = std::shared_ptr<const Held>;

  struct Node;

  /// One of the owners of an array or a dictionary.
  template <class Held>
  class Nested {
   public:
    explicit Nested(Held held);
    Nested(const Nested& other) noexcept;
    Nested(Nested&& other) noexcept : node_(other.give()) {}
    Nested& operator=(Nested other) noexcept {
      std::swap(node_, other.node_);
      return *this;
    }
    ~Nested() { release(node_); }

    [[nodiscard]] const Held* get() const;
    [[nodiscard]] Node* give() noexcept { return std::exchange(node_, nullptr); }

   private:
    Node* node_;
  };

  static inline void release(Node* node) noexcept;
  [[nodiscard]] inline Node* giveNode() noexcept;

  using Pair = std::pair<const Value*, const Value*>;
  [[nodiscard]] static inline bool alike(const Pair& pair, std::vector<Pair>& within);

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
  [[nodiscard]] const Held* nested() const {
    const auto* nested = std::get_if<Nested<Held>>(&held_);
    return nested == nullptr ? nullptr : nested->get();
  }
  template <class Held>
  static const Held& bare(const Held& held) {
    return held;
  }
  template <class Held>
  static const Held& bare(const Box<Held>& box) {
    return *box;
  }
  template <class Held>
  static const Held& bare(const Nested<Held>& nested) {
    return *nested.get();
  }

  std::variant<bool, std::int64_t, std::uint64_t, double, Instant, Box<std::string>, Box<Data>,
               Nested<Array>, Nested<Dictionary>>
      held_;
};

static_assert(std::is_nothrow_copy_constructible_v<Value> &&
              std::is_nothrow_copy_assignable_v<Value> &&
              std::is_nothrow_move_constructible_v<Value> &&
              std::is_nothrow_move_assignable_v<Value>);

/// An array or a dictionary, and how many values own it.
struct Value::Node {
  std::variant<Array, Dictionary> held;
  std::atomic<std::size_t> owners = 1;
  Node* next = nullptr;  // in the chain of those that have lost their last owner
};

template <class Held>
Value::Nested<Held>::Nested(Held held) : node_(new Node{std::move(held)}) {}

template <class Held>
Value::Nested<Held>::Nested(const Nested& other) noexcept : node_(other.node_) {
  if (node_ != nullptr) node_->owners.fetch_add(1, std::memory_order_relaxed);
}

template <class Held>
const Held* Value::Nested<Held>::get() const {
  return node_ == nullptr ? nullptr : std::get_if<Held>(&node_->held);
}

Value::Value(Array value) : held_(Nested(std::move(value))) {}
Value::Value(Dictionary value) : held_(Nested(std::move(value))) {}

/// Gives up and returns the owned node, if any.
Value::Node* Value::giveNode() noexcept {
  if (auto* array = std::get_if<Nested<Array>>(&held_)) return array->give();
  if (auto* dictionary = std::get_if<Nested<Dictionary>>(&held_)) return dictionary->give();
  return nullptr;
}

/// Ends one ownership. Before a node is deleted, its values give up their own nodes. Nodes that
/// have lost their last owner wait in a chain, so that none is released from within another.
void Value::release(Node* node) noexcept {
  Node* chain = nullptr;
  const auto disown = [&chain](Node* owned) {
    if (owned == nullptr || owned->owners.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    owned->next = std::exchange(chain, owned);
  };
  for (disown(node); chain != nullptr;) {
    const std::unique_ptr<Node> first(chain);
    chain = first->next;
    if (auto* array = std::get_if<Array>(&first->held)) {
      for (Value& value : *array) disown(value.giveNode());
    } else if (auto* dictionary = std::get_if<Dictionary>(&first->held)) {
      for (auto& entry : *dictionary) disown(entry.second.giveNode());
    }
  }
}

std::optional<bool> Value::truth() const {
  if (const auto* flag = std::get_if<bool>(&held_)) return *flag;
  if (const auto* integer = std::get_if<std::int64_t>(&held_)) return *integer != 0;
  if (const auto* natural = std::get_if<std::uint64_t>(&held_)) return *natural != 0;
  if (const auto* real = std::get_if<double>(&held_)) return *real != 0;
  return std::nullopt;
}

/// Whether two values are the same, apart from the values inside them, which are added to `within`
/// in pairs.
bool Value::alike(const Pair& pair, std::vector<Pair>& within) {
  const auto values = [&](const Value& mine, const Value& other) {
    within.emplace_back(&mine, &other);
    return true;
  };
  const auto entries = [&](const auto& mine, const auto& other) {
    return mine.first == other.first && values(mine.second, other.second);
  };
  return pair.first->visit([&](const auto& mine) {
    return pair.second->visit([&](const auto& other) {
      using Mine = std::remove_cvref_t<decltype(mine)>;
      if constexpr (!std::is_same_v<Mine, std::remove_cvref_t<decltype(other)>>) {
        return false;
      } else if constexpr (std::is_same_v<Mine, Array>) {
        return std::equal(mine.begin(), mine.end(), other.begin(), other.end(), values);
      } else if constexpr (std::is_same_v<Mine, Dictionary>) {
        return std::equal(mine.begin(), mine.end(), other.begin(), other.end(), entries);
      } else {
        return mine == other;
      }
    });
  });
}

bool operator==(const Value& left, const Value& right) {
  std::vector<Value::Pair> waiting;
  Value::Pair pair(&left, &right);
  while (Value::alike(pair, waiting)) {
    if (waiting.empty()) return true;
    pair = waiting.back();
    waiting.pop_back();
  }
  return false;
}

}  // namespace wenlolib

#endif
