/// The library's fixed date layouts, for its own use. Null if the calendar cannot show the date.
/// Unlike the operations offered to hosts, these let a failed allocation through.
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
