#include "support/MemorySystem.h"

#include <chrono>
#include <cmath>
#include <string>

#include "base/Integer.h"

namespace wenlolib::tests {
namespace {

using platform::LocalTime;
using platform::Selector;

/// Far inside the years that std::chrono::year holds.
constexpr double latest = 30000.0 * 365.0 * 86400.0;

std::string name(Selector selector) {
  std::string characters;
  for (int shift = 24; shift >= 0; shift -= 8) {
    characters += static_cast<char>(static_cast<std::uint32_t>(selector) >> shift & 0xFFU);
  }
  return characters;
}

std::optional<LocalTime> shifted(Instant date, std::int32_t offset) {
  const double seconds = std::floor(date.time_since_epoch().count());
  if (!(std::fabs(seconds) < latest)) return std::nullopt;
  const std::chrono::sys_seconds local(
      std::chrono::seconds(static_cast<std::int64_t>(seconds) + offset));
  const auto day = std::chrono::floor<std::chrono::days>(local);
  const std::chrono::year_month_day date3(day);
  const std::chrono::hh_mm_ss<std::chrono::seconds> time(local - day);
  return LocalTime{int{date3.year()},
                   static_cast<int>(unsigned{date3.month()}),
                   static_cast<int>(unsigned{date3.day()}),
                   static_cast<int>(time.hours().count()),
                   static_cast<int>(time.minutes().count()),
                   static_cast<int>(time.seconds().count()),
                   offset};
}

std::string offsetText(std::int32_t offset) {
  const std::int32_t minutes = (offset < 0 ? -offset : offset) / 60;
  return (offset < 0 ? "-" : "+") + decimal(minutes / 60, 2) + decimal(minutes % 60, 2);
}

std::string field(const LocalTime& time, char directive) {
  switch (directive) {
    case 'Y':
      return decimal(time.year, 4);
    case 'y':
      return decimal(time.year % 100, 2);
    case 'm':
      return decimal(time.month, 2);
    case 'd':
      return decimal(time.day, 2);
    case 'H':
      return decimal(time.hour, 2);
    case 'M':
      return decimal(time.minute, 2);
    case 'S':
      return decimal(time.second, 2);
    case 'z':
      return offsetText(time.secondsFromGMT);
    case '%':
      return "%";
    default:
      return std::string("%") + directive;
  }
}

}  // namespace

void MemorySystem::setVersion(std::int32_t major, std::int32_t minor, std::int32_t bugFix) {
  answers[Selector::majorVersion] = major;
  answers[Selector::minorVersion] = minor;
  answers[Selector::bugFixVersion] = bugFix;
}

std::optional<std::int32_t> MemorySystem::gestalt(Selector selector) {
  if (recorder_.fails("system.gestalt", name(selector))) return std::nullopt;
  const auto answer = answers.find(selector);
  if (answer == answers.end()) return std::nullopt;
  return answer->second;
}

Instant MemoryClock::now() {
  static_cast<void>(recorder_.fails("clock.now"));
  return time;
}

std::optional<LocalTime> MemoryCalendar::localTime(Instant date) {
  if (recorder_.fails("calendar.localTime")) return std::nullopt;
  return shifted(date, secondsFromGMT);
}

Text MemoryCalendar::formatted(Instant date, std::string_view format) {
  if (recorder_.fails("calendar.formatted", format)) return std::nullopt;
  const auto time = shifted(date, secondsFromGMT);
  if (!time) return std::nullopt;
  std::string text;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] == '%' && i + 1 < format.size()) {
      text += field(*time, format[++i]);
    } else {
      text += format[i];
    }
  }
  return text;
}

Instant dateOf(int year, unsigned month, unsigned day, int hour, int minute, double second) {
  using namespace std::chrono;
  const sys_days days(std::chrono::year(year) / std::chrono::month(month) / std::chrono::day(day));
  return Instant(Seconds(days.time_since_epoch()) + hours(hour) + minutes(minute) +
                 Seconds(second));
}

}  // namespace wenlolib::tests
