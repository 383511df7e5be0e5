#include "platform/linux/PropertyListDates.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <string>
#include <system_error>

#include "base/Integer.h"

namespace wenlolib::platform::gnulinux {
namespace {

constexpr double widestSeconds = 4e18;
constexpr std::int64_t widestYear = 200'000'000'000;

constexpr std::int64_t secondsPerDay = 86'400;

/// The calendar repeats after this cycle, which brings any year into the reach of std::chrono.
constexpr std::int64_t yearsPerCycle = 400;
constexpr std::int64_t daysPerCycle = 146'097;

std::int64_t floorDivided(std::int64_t number, std::int64_t divisor) {
  const std::int64_t quotient = number / divisor;
  return number % divisor < 0 ? quotient - 1 : quotient;
}

/// The digits that `text` begins with, at least `fewest` and at most `most` of them, taken off it.
std::optional<std::int64_t> takeNumber(std::string_view& text, std::size_t fewest,
                                       std::size_t most) {
  std::size_t length = 0;
  while (length < text.size() && isDigit(text[length])) ++length;
  if (length < fewest || length > most) return std::nullopt;
  std::int64_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + length, number);
  if (result.ec != std::errc()) return std::nullopt;
  text.remove_prefix(length);
  return number;
}

bool takeMark(std::string_view& text, char mark) {
  if (!text.starts_with(mark)) return false;
  text.remove_prefix(1);
  return true;
}

/// Two digits up to `highest`, then `mark`.
std::optional<std::int64_t> takeField(std::string_view& text, std::int64_t highest, char mark) {
  const auto number = takeNumber(text, 2, 2);
  if (!number || *number > highest || !takeMark(text, mark)) return std::nullopt;
  return number;
}

std::optional<std::int64_t> takeYear(std::string_view& text) {
  const bool negative = takeMark(text, '-');
  const auto year = takeNumber(text, 4, 12);
  if (!year || *year > widestYear || !takeMark(text, '-')) return std::nullopt;
  return negative ? -*year : *year;
}

/// Days since 1970-01-01; nothing where the year has no such day.
std::optional<std::int64_t> dayNumber(std::int64_t year, std::int64_t month, std::int64_t day) {
  const std::int64_t cycles = floorDivided(year, yearsPerCycle);
  const std::chrono::year_month_day date(
      std::chrono::year(static_cast<int>(year - cycles * yearsPerCycle)),
      std::chrono::month(static_cast<unsigned>(month)),
      std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count() + cycles * daysPerCycle;
}

/// "2024-02-29", for a number of days since 1970-01-01.
std::string dayText(std::int64_t days) {
  const std::int64_t cycles = floorDivided(days, daysPerCycle);
  const std::chrono::days inCycle(static_cast<int>(days - cycles * daysPerCycle));
  const std::chrono::year_month_day date{std::chrono::sys_days(inCycle)};
  const std::int64_t year = int{date.year()} + cycles * yearsPerCycle;
  return decimal(year, year < 0 ? 5 : 4) + '-' + decimal(unsigned{date.month()}, 2) + '-' +
         decimal(unsigned{date.day()}, 2);
}

}  // namespace

bool isCarriedDate(Instant date) {
  return std::abs(date.time_since_epoch().count()) <= widestSeconds;
}

Text dateText(Instant date) {
  if (!isCarriedDate(date)) return std::nullopt;
  const auto seconds = static_cast<std::int64_t>(std::floor(date.time_since_epoch().count()));
  const std::int64_t days = floorDivided(seconds, secondsPerDay);
  const std::int64_t ofDay = seconds - days * secondsPerDay;
  return dayText(days) + 'T' + decimal(ofDay / 3600, 2) + ':' + decimal(ofDay / 60 % 60, 2) + ':' +
         decimal(ofDay % 60, 2) + 'Z';
}

std::optional<Instant> dateFromText(std::string_view text) {
  const auto year = takeYear(text);
  const auto month = year ? takeField(text, 12, '-') : std::nullopt;
  const auto day = month ? takeField(text, 31, 'T') : std::nullopt;
  const auto hour = day ? takeField(text, 23, ':') : std::nullopt;
  const auto minute = hour ? takeField(text, 59, ':') : std::nullopt;
  const auto second = minute ? takeField(text, 59, 'Z') : std::nullopt;
  if (!second || !text.empty()) return std::nullopt;
  const auto days = dayNumber(*year, *month, *day);
  if (!days) return std::nullopt;
  const std::int64_t seconds = *days * secondsPerDay + *hour * 3600 + *minute * 60 + *second;
  const Instant date{Seconds(static_cast<double>(seconds))};
  if (!isCarriedDate(date)) return std::nullopt;
  return date;
}

}  // namespace wenlolib::platform::gnulinux
