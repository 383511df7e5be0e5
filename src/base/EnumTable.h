/// Tables with a row for each enumerator, checked at compile time.
#ifndef WENLOLIB_BASE_ENUMTABLE_H
#define WENLOLIB_BASE_ENUMTABLE_H

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace wenlolib {

/// Whether an enumerator has this value: the compiler prints any other value as a number.
template <auto value>
[[nodiscard]] consteval bool isEnumerator() {
  const std::string_view shown = __PRETTY_FUNCTION__;
  const char first = shown[shown.find_last_of(":) ") + 1];
  return first < '0' || first > '9';
}

/// How many enumerators there are from 0 on, without a gap.
template <class Enum, std::size_t known = 0>
[[nodiscard]] consteval std::size_t enumeratorCount() {
  if constexpr (isEnumerator<static_cast<Enum>(known)>()) return enumeratorCount<Enum, known + 1>();
  return known;
}

/// All enumerators, in order.
template <class Enum>
inline constexpr auto enumerators = [] {
  std::array<Enum, enumeratorCount<Enum>()> all{};
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<Enum>(i);
  return all;
}();

/// A row for each enumerator. A missing or misplaced row does not compile.
template <class Enum, class Row>
class EnumTable {
 public:
  using NamedRows = const std::pair<Enum, Row> (&)[enumeratorCount<Enum>()];

  /// An empty row for each.
  constexpr EnumTable() = default;

  /// A row for each, paired with its enumerator.
  consteval explicit EnumTable(NamedRows rows) {
    for (const Enum key : enumerators<Enum>) {
      const auto& [named, row] = rows[place(key)];
      if (named != key) throw "the rows must stand in the order of the enumerators";
      (*this)[key] = row;
    }
  }

  constexpr Row& operator[](Enum key) { return rows_[place(key)]; }
  constexpr const Row& operator[](Enum key) const { return rows_[place(key)]; }

 private:
  static constexpr std::size_t place(Enum key) { return static_cast<std::size_t>(key); }

  std::array<Row, enumeratorCount<Enum>()> rows_{};
};

}  // namespace wenlolib

#endif
