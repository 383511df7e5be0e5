#include "terminal/Format.h"

#include <fmt/format.h>

#include <array>
#include <cstdlib>

namespace wenlolib::tools {

std::string sizeText(std::uint64_t bytes) {
  constexpr std::array units = {" B", " KiB", " MiB", " GiB", " TiB"};
  std::size_t unit = 0;
  std::uint64_t scale = 1;
  for (; unit + 1 < units.size() && bytes / scale >= 1024; ++unit) scale *= 1024;
  const std::string whole = groupDigits(bytes / scale);
  if (unit == 0) return whole + units[unit];
  return fmt::format("{}.{}{}", whole, bytes % scale * 10 / scale, units[unit]);
}

std::string groupDigits(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

std::string countText(std::uint64_t number, std::string_view noun) {
  return fmt::format("{} {}{}", groupDigits(number), noun, number == 1 ? "" : "s");
}

std::string localTime(std::time_t time) {
  std::tm parts{};
  if (localtime_r(&time, &parts) == nullptr) return "(out of range)";
  const long offset = std::abs(parts.tm_gmtoff);
  return fmt::format("{}-{:02}-{:02} {:02}:{:02}:{:02} {}{:02}:{:02}", parts.tm_year + 1900L,
                     parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                     parts.tm_gmtoff < 0 ? '-' : '+', offset / 3600, offset / 60 % 60);
}

}  // namespace wenlolib::tools
