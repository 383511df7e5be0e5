/// Replaces parts of this system's Foundation for the tests.
#ifndef WENLOLIB_TESTS_PLATFORM_APPLE_FOUNDATIONDOUBLES_H
#define WENLOLIB_TESTS_PLATFORM_APPLE_FOUNDATIONDOUBLES_H

#include "wenlolib/Text.h"

namespace wenlolib::tests {

/// From the first call on, the file manager offers the container lookup, with this answer.
void offerContainer(const Text& path);

/// The group that was last looked up.
Text askedContainer();

/// Sets whether dates deny that they know calendar-format directives.
void hideCalendarFormat(bool hidden);

/// Makes the zone this many seconds east of GMT the default one.
void useTimeZone(int secondsFromGMT);

/// Makes the container lookup raise an exception.
void raiseInContainerLookup(bool raising);

/// The options with which a document was last parsed.
unsigned long askedXmlOptions();

}  // namespace wenlolib::tests

#endif
