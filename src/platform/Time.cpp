#include "platform/Time.h"

#include "base/Integer.h"

namespace wenlolib::platform {

// --- Directives ---

namespace {

std::string zoneText(std::int64_t seconds) {
  std::string text(1, seconds < 0 ? '-' : '+');
  if (seconds < 0) seconds = -seconds;
  return text + decimal(seconds / 3600, 2) + decimal(seconds % 3600 / 60, 2);
}

std::string directiveText(const LocalTime& time, char directive) {
  switch (directive) {
    case 'Y':
      return decimal(time.year, 4);
    case 'y':
      return decimal((time.year % 100 + 100) % 100, 2);
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
      return zoneText(time.secondsFromGMT);
    case '%':
      return "%";
    default:
      return {'%', directive};
  }
}

}  // namespace

std::string calendarText(const LocalTime& time, std::string_view format) {
  std::string text;
  for (std::size_t i = 0; i < format.size(); ++i) {
    if (format[i] == '%' && i + 1 < format.size()) {
      text += directiveText(time, format[++i]);
    } else {
      text += format[i];
    }
  }
  return text;
}

}  // namespace wenlolib::platform
