#include "terminal/Format.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdlib>

#include "base/Integer.h"

namespace wenlolib::tools {
namespace {

/// Takes a number of so many digits (0: all there are) off the beginning of `text`.
std::optional<int> takeNumber(std::string_view& text, std::size_t digits) {
  const std::size_t available = std::min(text.find_first_not_of("0123456789"), text.size());
  const std::size_t length = digits == 0 ? available : digits;
  int number = 0;
  if (length == 0 || length > available) return std::nullopt;
  const auto result = std::from_chars(text.data(), text.data() + length, number);
  if (result.ec != std::errc()) return std::nullopt;
  text.remove_prefix(length);
  return number;
}

bool take(std::string_view& text, char expected) {
  if (!text.starts_with(expected)) return false;
  text.remove_prefix(1);
  return true;
}

/// "2024-03-15" as days since 1970.
std::optional<std::chrono::sys_days> takeDay(std::string_view& text) {
  const auto year = takeNumber(text, 0);
  if (!year || *year > 9999 || !take(text, '-')) return std::nullopt;
  const auto month = takeNumber(text, 2);
  if (!month || !take(text, '-')) return std::nullopt;
  const auto day = takeNumber(text, 2);
  if (!day) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

/// "09:05:07" in seconds.
std::optional<int> takeTimeOfDay(std::string_view& text) {
  const auto hour = takeNumber(text, 2);
  if (!hour || *hour > 23 || !take(text, ':')) return std::nullopt;
  const auto minute = takeNumber(text, 2);
  if (!minute || *minute > 59 || !take(text, ':')) return std::nullopt;
  const auto second = takeNumber(text, 2);
  if (!second || *second > 60) return std::nullopt;
  return *hour * 3600 + *minute * 60 + *second;
}

/// "+09:00", or "+0900", in seconds.
std::optional<int> takeOffset(std::string_view& text) {
  const bool west = take(text, '-');
  if (!west && !take(text, '+')) return std::nullopt;
  const auto hours = takeNumber(text, 2);
  if (!hours) return std::nullopt;
  static_cast<void>(take(text, ':'));
  const auto minutes = takeNumber(text, 2);
  if (!minutes || *minutes > 59) return std::nullopt;
  const int seconds = *hours * 3600 + *minutes * 60;
  return west ? -seconds : seconds;
}

}  // namespace

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
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, ",");
  return digits;
}

std::string countText(std::uint64_t number, std::string_view noun) {
  return fmt::format("{} {}{}", groupDigits(number), noun, number == 1 ? "" : "s");
}

std::string localTime(std::time_t time) {
  std::tm parts{};
  if (localtime_r(&time, &parts) == nullptr) return "(no date)";
  const long offset = std::abs(parts.tm_gmtoff);
  return fmt::format("{}-{:02}-{:02} {:02}:{:02}:{:02} {}{:02}:{:02}", parts.tm_year + 1900L,
                     parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                     parts.tm_gmtoff < 0 ? '-' : '+', offset / 3600, offset / 60 % 60);
}

std::optional<std::time_t> momentOf(std::string_view dateText) {
  const auto day = takeDay(dateText);
  if (!day || !take(dateText, 'T')) return std::nullopt;
  const auto timeOfDay = takeTimeOfDay(dateText);
  if (!timeOfDay) return std::nullopt;
  const auto offset = takeOffset(dateText);
  if (!offset || !dateText.empty()) return std::nullopt;
  const auto midnight = std::chrono::duration_cast<std::chrono::seconds>(day->time_since_epoch());
  return static_cast<std::time_t>(midnight.count()) + *timeOfDay - *offset;
}

}  // namespace wenlolib::tools
