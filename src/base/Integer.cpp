#include "base/Integer.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace wenlolib {

std::string hexadecimalText(std::string_view bytes) {
  std::string text;
  text.reserve(2 * bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += hexadecimalDigits[byte >> 4];
    text += hexadecimalDigits[byte & 15];
  }
  return text;
}

std::int32_t saturated(std::int64_t value) noexcept {
  constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(value, lowest, highest));
}

std::int32_t leadingInteger(std::string_view text) noexcept {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  const bool negative = !text.empty() && text.front() == '-';
  if (!text.empty() && (negative || text.front() == '+')) text.remove_prefix(1);
  std::int64_t value = 0;
  for (const char character : text) {
    if (!isDigit(character)) break;
    value = value * 10 + (character - '0');
    if (value > std::numeric_limits<std::int32_t>::max()) {
      return negative ? std::numeric_limits<std::int32_t>::min()
                      : std::numeric_limits<std::int32_t>::max();
    }
  }
  return static_cast<std::int32_t>(negative ? -value : value);
}

std::optional<std::uint64_t> takeNumber(std::string_view& text, int base) noexcept {
  std::uint64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
  return number;
}

std::string decimal(std::int64_t value, std::size_t width) {
  char buffer[std::numeric_limits<std::int64_t>::digits10 + 3];
  const auto result = std::to_chars(std::begin(buffer), std::end(buffer), value);
  std::string text(std::begin(buffer), result.ptr);
  if (text.size() < width) text.insert(value < 0 ? 1U : 0U, width - text.size(), '0');
  return text;
}

}  // namespace wenlolib
