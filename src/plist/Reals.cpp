#include "plist/Reals.h"

#include <limits>

// Apple's C++ library converts doubles only on recent systems, its C library on all of them. The
// null locale is the "C" locale there.
#if defined(__APPLE__) || defined(WENLOLIB_C_REALS)

#include <xlocale.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace wenlolib::plist {

std::optional<double> realSpelled(std::string_view digits) {
  // Rules out hexadecimal digits and whatever else that library takes for a number.
  if (digits.find_first_not_of("0123456789.eE+-") != digits.npos) return std::nullopt;
  const std::string ended(digits);
  char* stop = nullptr;
  const double number = strtod_l(ended.c_str(), &stop, nullptr);
  const bool whole = stop == ended.c_str() + ended.size();
  // Too small for a double, unless it is spelled as zero.
  const std::string_view mantissa = digits.substr(0, digits.find_first_of("eE"));
  const bool tooSmall = number == 0 && mantissa.find_first_of("123456789") != mantissa.npos;
  return whole && !std::isinf(number) && !tooSmall ? std::optional(number) : std::nullopt;
}

std::string spelled(double number) {
  char text[std::numeric_limits<double>::max_digits10 + 16];
  for (int digits = std::numeric_limits<double>::digits10;; ++digits) {
    static_cast<void>(snprintf_l(text, sizeof text, nullptr, "%.*g", digits, number));
    const bool enough = digits == std::numeric_limits<double>::max_digits10;
    if (enough || strtod_l(text, nullptr, nullptr) == number) return text;
  }
}

}  // namespace wenlolib::plist

#else

#include <charconv>
#include <iterator>
#include <system_error>

namespace wenlolib::plist {

std::optional<double> realSpelled(std::string_view digits) {
  double number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

std::string spelled(double number) {
  char buffer[std::numeric_limits<double>::max_digits10 + 16];
  const auto result = std::to_chars(std::begin(buffer), std::end(buffer), number);
  return std::string(std::begin(buffer), result.ptr);
}

}  // namespace wenlolib::plist

#endif
