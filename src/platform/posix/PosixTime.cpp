#include "platform/posix/PosixTime.h"

#include <time.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>

#include "platform/Time.h"
#include "platform/posix/Errors.h"
#include "platform/posix/WholeFile.h"

// The first use of local time
//
// The C library reads the zone's file once, when a local time is first asked for. If that fails for
// lack of memory or descriptors, it says nothing and shows GMT from then on, to the whole process.
// So before the first use here the library reads the file itself. If even that fails, the call
// fails, and the C library is not asked. A shortage may still begin between the two. It shows
// afterwards: the abbreviation that the C library then gives is not in the file. The C library is
// then told to read the file again, which helps if the zone does not come from the environment. If
// it does not help, the call fails.

namespace wenlolib::platform::posix {
namespace {

/// What is known of the C library's zone. This is all that is remembered between calls, because the
/// C library remembers it as well.
enum class Zone : std::uint8_t { notAsked, known, lost };
std::atomic<Zone> zone{Zone::notAsked};

/// Whether this process had used local time when the library was loaded. (A zone that is called GMT
/// all year looks as if it had not, which costs one read of its file.) Checked once, not at each
/// call: another thread may be changing the names by then.
const bool wasUsedBefore =
    std::string_view(tzname[0]) != "GMT" || std::string_view(tzname[1]) != "GMT";

/// The file in which the C library looks for the zone's rules. There is no such file if the
/// variable holds the rules themselves.
std::string zoneFile() {
  const char* name = std::getenv("TZ");
  if (name == nullptr) return "/etc/localtime";
  if (*name == ':') ++name;
  if (*name == '/') return name;
  const char* folder = std::getenv("TZDIR");
  const bool given = folder != nullptr && *folder != '\0';
  return std::string(given ? folder : "/usr/share/zoneinfo") + "/" + name;
}

bool convert(time_t date, struct tm& fields) {
  return ::localtime_r(&date, &fields) != nullptr;
}

/// Local time if it is not certain that the zone's file has been read. Throws if it cannot be read.
bool convertWithCare(time_t date, struct tm& fields) {
  constexpr std::size_t longestFile = std::size_t{1} << 20;
  const auto file = readWhole(zoneFile(), longestFile).bytes;
  const auto isLost = [&] {
    return file && file->starts_with("TZif") && file->find(fields.tm_zone) == std::string::npos;
  };
  if (!convert(date, fields)) return false;
  if (isLost()) {
    zone = Zone::lost;
    ::tzset();
    if (!convert(date, fields) || isLost()) throw std::bad_alloc();
  }
  zone = Zone::known;
  return true;
}

bool localFields(time_t date, struct tm& fields) {
  const bool isKnown = zone == Zone::known || (wasUsedBefore && zone == Zone::notAsked);
  return isKnown ? convert(date, fields) : convertWithCare(date, fields);
}

}  // namespace

Instant PosixClock::now() {
  timespec time{};
  if (::clock_gettime(CLOCK_REALTIME, &time) != 0) throw NoAnswer({Step::askClock, errno});
  return Instant(std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec));
}

std::optional<LocalTime> PosixCalendar::localTime(Instant date) {
  const CancellationHold hold;
  // Beyond any date, and within what a time_t holds.
  constexpr double limit = sizeof(time_t) > 4 ? 1e18 : 2147483648.0;
  const double seconds = std::floor(date.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return std::nullopt;
  const auto whole = static_cast<time_t>(seconds);
  struct tm fields {};
  if (!localFields(whole, fields)) return std::nullopt;
  LocalTime time;
  time.year = std::int64_t{fields.tm_year} + 1900;
  time.month = fields.tm_mon + 1;
  time.day = fields.tm_mday;
  time.hour = fields.tm_hour;
  time.minute = fields.tm_min;
  time.second = fields.tm_sec;
  time.secondsFromGMT = static_cast<std::int32_t>(fields.tm_gmtoff);
  return time;
}

Text PosixCalendar::formatted(Instant date, std::string_view format) {
  const auto time = localTime(date);
  if (!time) return std::nullopt;
  return calendarText(*time, format);
}

}  // namespace wenlolib::platform::posix
