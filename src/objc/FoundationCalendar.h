/// The calendar that the Objective-C classes lend the core.
#ifndef WENLOLIB_OBJC_FOUNDATIONCALENDAR_H
#define WENLOLIB_OBJC_FOUNDATIONCALENDAR_H

#include <cstdint>
#include <optional>

#include "platform/Time.h"

namespace wenlolib::objc {

/// Local time in Foundation's default time zone, which a host may have set for its process. If
/// Foundation cannot tell, that counts as a lack of memory. Made for one operation, and used by its
/// thread alone.
class FoundationCalendar : public platform::Calendar {
 public:
  std::optional<platform::LocalTime> localTime(Instant date) override;
  Text formatted(Instant date, std::string_view format) override;

 private:
  struct Shown {
    double second;
    std::int32_t offset;
  };
  /// The last answer: a record asks about the same second more than once, and GNUstep is slow.
  [[maybe_unused]] std::optional<Shown> _last;
};

}  // namespace wenlolib::objc

#endif
