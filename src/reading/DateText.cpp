#include "reading/DateText.h"

#include <charconv>
#include <chrono>

#include "base/Integer.h"

namespace wenlolib {

std::optional<std::string> utcText(std::time_t time) {
  const std::chrono::sys_seconds moment{std::chrono::seconds(time)};
  const auto day = std::chrono::floor<std::chrono::days>(moment);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(moment - day);
  if (date.year() < std::chrono::year(1) || date.year() > std::chrono::year(9999)) {
    return std::nullopt;
  }
  return decimal(static_cast<int>(date.year()), 4) + '-' +
         decimal(static_cast<unsigned>(date.month()), 2) + '-' +
         decimal(static_cast<unsigned>(date.day()), 2) + 'T' + decimal(clock.hours().count(), 2) +
         ':' + decimal(clock.minutes().count(), 2) + ':' + decimal(clock.seconds().count(), 2) +
         'Z';
}

std::optional<std::time_t> momentOf(std::string_view dateText) {
  const std::optional<Moment> moment = zonedMomentOf(dateText);
  return moment ? std::optional(moment->time) : std::nullopt;
}

std::optional<Moment> zonedMomentOf(std::string_view dateText) {
  Scanner scanner(dateText);
  const std::chrono::year year(scanner.number(0, 9999));
  const int month = scanner.expect('-').number(1, 12, 2);
  const int day = scanner.expect('-').number(1, 31, 2);
  const int hours = scanner.expect('T').number(0, 23, 2);
  const int minutes = scanner.expect(':').number(0, 59, 2);
  const int seconds = scanner.expect(':').number(0, 60, 2);
  const int offset = scanner.offset();
  const std::chrono::year_month_day date = year / month / day;
  if (!scanner.done() || !date.ok()) return std::nullopt;
  const std::chrono::seconds time = std::chrono::sys_days(date).time_since_epoch() +
                                    std::chrono::hours(hours) + std::chrono::minutes(minutes) +
                                    std::chrono::seconds(seconds) - std::chrono::seconds(offset);
  return Moment{static_cast<std::time_t>(time.count()), offset};
}

Scanner& Scanner::expect(char character) {
  sound_ = sound_ && rest_.starts_with(character);
  if (sound_) rest_.remove_prefix(1);
  return *this;
}

std::int32_t Scanner::number(std::int32_t least, std::int32_t most, std::size_t digits) {
  std::int32_t value = 0;
  const std::string_view text = digits == 0 ? rest_ : rest_.substr(0, digits);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const auto length = static_cast<std::size_t>(end - text.data());
  const bool sized = isDigit(next()) && (digits == 0 || length == digits);
  sound_ = sound_ && error == std::errc() && sized && value >= least && value <= most;
  if (sound_) rest_.remove_prefix(length);
  return value;
}

std::int32_t Scanner::offset() {
  const bool west = next() == '-';
  const std::int32_t hours = expect(west ? '-' : '+').number(0, 23, 2);
  if (next() == ':') expect(':');
  const std::int32_t seconds = hours * 3600 + number(0, 59, 2) * 60;
  return west ? -seconds : seconds;
}

}  // namespace wenlolib
