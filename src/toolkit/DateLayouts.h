/// The library's fixed layouts of a date in a calendar, for its own use: null where the calendar
/// cannot show the date, and unlike the operations offered to hosts they let a failed allocation
/// through.
#ifndef WENLOLIB_TOOLKIT_DATELAYOUTS_H
#define WENLOLIB_TOOLKIT_DATELAYOUTS_H

#include "platform/Time.h"
#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"

namespace wenlolib {

/// "2403", with the day "240315".
[[nodiscard]] Text shortDate(platform::Calendar& calendar, Instant date, bool withDay);

/// "2024-03-15T09:05:07+09:00".
[[nodiscard]] Text zonedDate(platform::Calendar& calendar, Instant date);

/// "2024/03/15 09:05:07".
[[nodiscard]] Text slashedDate(platform::Calendar& calendar, Instant date);

}  // namespace wenlolib

#endif
