#include "plist/Scalars.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "plist/Reals.h"

namespace wenlolib::plist {

// --- Numbers ---

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
  const auto number = takeNumber(text, base);
  return text.empty() ? number : std::nullopt;
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
  // The conversion below would also accept a second sign, and spellings of its own for NaN and
  // infinity.
  if (text.empty() || (text.front() != '.' && (text.front() < '0' || text.front() > '9'))) {
    return std::nullopt;
  }
  const auto number = realSpelled(text);
  return number ? std::optional(sign * *number) : std::nullopt;
}

std::string realText(double number) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "infinity" : "-infinity";
  return spelled(number);
}

// --- Dates ---

namespace {

constexpr double widestSeconds = 4e18;
constexpr std::int64_t widestYear = 200'000'000'000;

constexpr std::int64_t secondsPerDay = 86'400;

/// The calendar repeats after this cycle, which brings any year within the reach of std::chrono.
constexpr std::int64_t yearsPerCycle = 400;
constexpr std::int64_t daysPerCycle = 146'097;

std::int64_t floorDivided(std::int64_t number, std::int64_t divisor) {
  const std::int64_t quotient = number / divisor;
  return number % divisor < 0 ? quotient - 1 : quotient;
}

/// The digits that `text` begins with, at least `fewest` and at most `most` of them, taken off it.
std::optional<std::int64_t> takeDigits(std::string_view& text, std::size_t fewest,
                                       std::size_t most) {
  const std::size_t size = text.size();
  const auto number = takeNumber(text);
  const std::size_t length = size - text.size();
  if (!number || length < fewest || length > most) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

bool takeMark(std::string_view& text, char mark) {
  if (!text.starts_with(mark)) return false;
  text.remove_prefix(1);
  return true;
}

/// Two digits up to `highest`, then `mark`.
std::optional<std::int64_t> takeField(std::string_view& text, std::int64_t highest, char mark) {
  const auto number = takeDigits(text, 2, 2);
  if (!number || *number > highest || !takeMark(text, mark)) return std::nullopt;
  return number;
}

std::optional<std::int64_t> takeYear(std::string_view& text) {
  const bool negative = takeMark(text, '-');
  const auto year = takeDigits(text, 1, 12);
  if (!year || *year > widestYear || !takeMark(text, '-')) return std::nullopt;
  return negative ? -*year : *year;
}

/// Days since 1970-01-01; nothing if the year has no such day.
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

// --- Data ---

namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// The six bits that a character stands for, or -1.
int sextet(char character) {
  if (character >= 'A' && character <= 'Z') return character - 'A';
  if (character >= 'a' && character <= 'z') return character - 'a' + 26;
  if (character >= '0' && character <= '9') return character - '0' + 52;
  if (character == '+') return 62;
  return character == '/' ? 63 : -1;
}

}  // namespace

void appendBase64(std::string& text, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const auto group = bytes.first(std::min<std::size_t>(3, bytes.size()));
    bytes = bytes.subspan(group.size());
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) bits = bits << 8 | (i < group.size() ? group[i] : 0U);
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= group.size() ? alphabet[bits >> (18 - 6 * i) & 63U] : '=';
    }
  }
}

std::optional<Value::Data> dataFromBase64(std::string_view text) {
  Value::Data data;
  data.reserve(text.size() / 4 * 3);
  std::uint32_t bits = 0;
  std::size_t characters = 0;
  std::size_t padding = 0;
  for (const char character : text) {
    if (isBlank(character)) continue;
    const int value = sextet(character);
    if (character == '=') ++padding;
    if (character != '=' && (value < 0 || padding > 0)) return std::nullopt;
    bits = bits << 6 | static_cast<std::uint32_t>(std::max(value, 0));
    if (++characters % 4 != 0) continue;
    if (padding > 2) return std::nullopt;
    for (std::size_t i = 0; i < 3 - padding; ++i) {
      data.push_back(static_cast<std::uint8_t>(bits >> (16 - 8 * i) & 0xFFU));
    }
  }
  if (characters % 4 != 0) return std::nullopt;
  return data;
}

// --- Texts ---

Text utf8FromUtf16(std::string_view bytes) {
  std::vector<std::uint16_t> units(bytes.size() / 2);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto high = static_cast<unsigned char>(bytes[2 * i]);
    const auto low = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<std::uint16_t>(high << 8 | low);
  }
  return utf8From(units);
}

}  // namespace wenlolib::plist
