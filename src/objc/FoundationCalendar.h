/// The calendar that the Objective-C classes lend the core.
#ifndef WENLOLIB_OBJC_FOUNDATIONCALENDAR_H
#define WENLOLIB_OBJC_FOUNDATIONCALENDAR_H

#include "platform/Time.h"

namespace wenlolib::objc {

/// Local time in Foundation's default time zone, which a host may have set for its process. Where
/// Foundation cannot say, that counts as a lack of memory.
[[nodiscard]] platform::Calendar& foundationCalendar();

}  // namespace wenlolib::objc

#endif
