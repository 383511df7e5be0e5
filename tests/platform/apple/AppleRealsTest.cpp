#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <limits>

#include "plist/Reals.h"

// Compares the code for Apple's C library with the C++ library of this system.

namespace wenlolib::tests {
namespace {

std::optional<double> expected(std::string_view digits) {
  double number = 0;
  const auto [stop, error] = std::from_chars(digits.begin(), digits.end(), number);
  const bool whole = error == std::errc() && stop == digits.end();
  return whole ? std::optional(number) : std::nullopt;
}

TEST(AppleReals, AreReadAsOnEverySystem) {
  for (const char* digits : {"0",
                             "3",
                             "1.",
                             ".5",
                             "0.1",
                             "1.5e3",
                             "1E+05",
                             "1e-5",
                             "5e-324",
                             "1e-999",
                             "0e999",
                             "0.00e-999",
                             "1.7976931348623157e308",
                             "1e309",
                             "1e999",
                             ".",
                             "1e",
                             "1e+",
                             "1,5",
                             "1 ",
                             "0x10",
                             "0x1p3",
                             "1.2.3",
                             "1-",
                             "1n",
                             "9007199254740993",
                             "2.2250738585072011e-308"}) {
    EXPECT_EQ(plist::realSpelled(digits), expected(digits)) << digits;
  }
  EXPECT_EQ(plist::realSpelled(std::string_view("1\0002", 3)), std::nullopt);
}

TEST(AppleReals, AreSpelledSoThatTheyComeBack) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {0.0, 1.0, 0.1, -1e-310, 1.0 / 3, 2.0 / 3, 1e23, 123456789012345678.0,
                              Limits::max(), Limits::min(), Limits::denorm_min()}) {
    EXPECT_EQ(expected(plist::spelled(number)), number) << plist::spelled(number);
  }
  EXPECT_EQ(plist::spelled(0.1), "0.1");
  EXPECT_EQ(plist::spelled(1710461107.25), "1710461107.25");
}

}  // namespace
}  // namespace wenlolib::tests
