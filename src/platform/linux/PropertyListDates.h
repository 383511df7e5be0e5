/// Dates of property lists.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTDATES_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTDATES_H

#include <optional>
#include <string_view>

#include "base/Instant.h"
#include "base/Text.h"

namespace wenlolib::platform::gnulinux {

/// Whether a property list can carry `date`: finite, and within some hundred thousand million
/// years, beyond which the calendar arithmetic would overflow.
[[nodiscard]] bool isCarriedDate(Instant date);

/// `date` in GMT, fractions of a second cut towards the past, such as "2024-02-29T23:59:59Z". A
/// year beyond four digits is written in full, one before year 0 as "-0044". Null where the date
/// cannot be carried.
[[nodiscard]] Text dateText(Instant date);

/// The date that the whole of `text` spells in the form above; nothing where there is no such date.
[[nodiscard]] std::optional<Instant> dateFromText(std::string_view text);

}  // namespace wenlolib::platform::gnulinux

#endif
