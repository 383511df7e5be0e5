#include "base/EnumTable.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

namespace wenlolib::tests {
namespace {

enum class Ink : std::uint8_t { cyan, magenta2, key };
enum class Paper { plain };

using Prices = EnumTable<Ink, int>;

constexpr Prices prices({{Ink::cyan, 7}, {Ink::magenta2, 8}, {Ink::key, 5}});

TEST(Enumerators, AreAllThatAreNamedInOrder) {
  EXPECT_EQ(enumerators<Ink>, (std::array{Ink::cyan, Ink::magenta2, Ink::key}));
  EXPECT_EQ(enumerators<Paper>, std::array{Paper::plain});
}

TEST(EnumTable, HasTheRowOfEachEnumerator) {
  EXPECT_EQ(prices[Ink::cyan], 7);
  EXPECT_EQ(prices[Ink::magenta2], 8);
  EXPECT_EQ(prices[Ink::key], 5);
}

TEST(EnumTable, CountsFromZero) {
  EnumTable<Ink, int> sheets;
  ++sheets[Ink::key];
  EXPECT_EQ(sheets[Ink::cyan], 0);
  EXPECT_EQ(sheets[Ink::key], 1);
}

/// Whether a table with these keys compiles.
template <class Table, Ink... keys>
concept Compiles = requires {
  typename std::bool_constant<(Table({{keys, 0}...}), true)>;
};

TEST(EnumTable, TakesEachRowOnlyInItsPlace) {
  EXPECT_TRUE((Compiles<Prices, Ink::cyan, Ink::magenta2, Ink::key>));
  EXPECT_FALSE((Compiles<Prices, Ink::cyan, Ink::magenta2>));
  EXPECT_FALSE((Compiles<Prices, Ink::magenta2, Ink::key>));
  EXPECT_FALSE((Compiles<Prices, Ink::cyan, Ink::key, Ink::magenta2>));
  EXPECT_FALSE((Compiles<Prices, Ink::cyan, Ink::magenta2, Ink::key, Ink::key>));
}

}  // namespace
}  // namespace wenlolib::tests
