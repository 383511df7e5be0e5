/// The library's fixed layouts of a date, for its own use: null where the calendar cannot show the
/// date, and unlike the operations offered to hosts they let a failed allocation through.
#ifndef WENLOLIB_TOOLKIT_DATELAYOUTS_H
#define WENLOLIB_TOOLKIT_DATELAYOUTS_H

#include "base/Instant.h"
#include "base/Text.h"

namespace wenlolib {

/// "2403", with the day "240315".
[[nodiscard]] Text shortDate(Instant date, bool withDay);

/// "2024-03-15T09:05:07+09:00".
[[nodiscard]] Text zonedDate(Instant date);

/// "2024/03/15 09:05:07".
[[nodiscard]] Text slashedDate(Instant date);

}  // namespace wenlolib

#endif
