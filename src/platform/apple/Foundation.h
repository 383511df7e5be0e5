/// What only Objective-C can ask of the system, as plain functions.
#ifndef WENLOLIB_PLATFORM_APPLE_FOUNDATION_H
#define WENLOLIB_PLATFORM_APPLE_FOUNDATION_H

#include <string_view>

#include "platform/System.h"
#include "wenlolib/Instant.h"

namespace wenlolib::platform::apple::foundation {

[[nodiscard]] Text userName();
[[nodiscard]] Text homeFolder();

/// The first Library folder of the user's domain; null if there is none.
[[nodiscard]] Text libraryFolder();

/// The app-group container. Systems before 10.8 do not offer the lookup.
[[nodiscard]] Container groupContainer(std::string_view groupIdentifier);

/// A date by calendar-format directives, in the default time zone and the user's locale. Null if
/// the system no longer offers them.
[[nodiscard]] Text calendarFormatted(Instant date, std::string_view format);

/// `document` parsed with the tidy option and serialised again; null if it cannot be parsed.
[[nodiscard]] Text tidied(std::string_view document);

}  // namespace wenlolib::platform::apple::foundation

#endif
