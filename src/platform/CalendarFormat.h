/// Dates by calendar-format directives.
#ifndef WENLOLIB_PLATFORM_CALENDARFORMAT_H
#define WENLOLIB_PLATFORM_CALENDARFORMAT_H

#include <string>
#include <string_view>

#include "platform/Time.h"

namespace wenlolib::platform {

/// `format` with its directives filled in; see `Calendar::formatted`. Anything that is no directive
/// stands as it is.
[[nodiscard]] std::string calendarText(const LocalTime& time, std::string_view format);

}  // namespace wenlolib::platform

#endif
