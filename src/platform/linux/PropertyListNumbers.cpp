#include "platform/linux/PropertyListNumbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <system_error>

namespace wenlolib::platform::gnulinux {
namespace {

/// Takes a sign from the front of `text`; true for a minus.
bool takeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

bool equalsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char character, char lower) {
                      const bool upper = character >= 'A' && character <= 'Z';
                      return (upper ? character - 'A' + 'a' : character) == lower;
                    });
}

/// The number that the whole of `text` spells, which starts with neither sign nor blank.
std::optional<std::uint64_t> natural(std::string_view text, int base) {
  std::uint64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

Value naturalValue(std::uint64_t number) {
  if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return number;
  return static_cast<std::int64_t>(number);
}

std::optional<Value> integerFromText(std::string_view text) {
  const bool negative = takeSign(text);
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  const auto magnitude = natural(text, hexadecimal ? 16 : 10);
  if (!magnitude) return std::nullopt;
  if (!negative) return naturalValue(*magnitude);
  constexpr std::uint64_t lowestMagnitude = std::uint64_t{1} << 63;
  if (*magnitude > lowestMagnitude) return std::nullopt;
  return static_cast<std::int64_t>(std::uint64_t{0} - *magnitude);
}

std::optional<double> realFromText(std::string_view text) {
  const bool negative = takeSign(text);
  const double sign = negative ? -1 : 1;
  if (equalsIgnoringCase(text, "nan")) return std::numeric_limits<double>::quiet_NaN();
  if (equalsIgnoringCase(text, "inf") || equalsIgnoringCase(text, "infinity")) {
    return sign * std::numeric_limits<double>::infinity();
  }
  // The conversion below has spellings of its own for a second sign and for what is no number.
  if (text.empty() || (text.front() != '.' && (text.front() < '0' || text.front() > '9'))) {
    return std::nullopt;
  }
  double number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return sign * number;
}

std::string realText(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "infinity" : "-infinity";
  char buffer[std::numeric_limits<double>::max_digits10 + 16];
  const auto result = std::to_chars(std::begin(buffer), std::end(buffer), number);
  return std::string(std::begin(buffer), result.ptr);
}

}  // namespace wenlolib::platform::gnulinux
