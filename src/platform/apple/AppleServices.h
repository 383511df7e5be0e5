/// The small services on macOS: the system, the clock, local time, the user, identifiers, XML.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLESERVICES_H
#define WENLOLIB_PLATFORM_APPLE_APPLESERVICES_H

#include <CoreFoundation/CoreFoundation.h>

#include "platform/System.h"
#include "platform/Time.h"
#include "platform/Xml.h"
#include "platform/apple/Foundation.h"

namespace wenlolib::platform::apple {

// --- The system ---

/// Asks the system again at every call.
class AppleSystem : public System {
 public:
  std::optional<std::int32_t> gestalt(Selector selector) override;
};

// --- The clock ---

/// Not the standard library's clock: in a build with current tools, that one makes a call that came
/// with 10.12.
class AppleClock : public Clock {
 public:
  Instant now() override {
    return Instant(Seconds(CFAbsoluteTimeGetCurrent() + kCFAbsoluteTimeIntervalSince1970));
  }
};

// --- Local time ---

/// Local time in Core Foundation's default time zone, which a host may have set for its process.
class AppleCalendar : public Calendar {
 public:
  std::optional<LocalTime> localTime(Instant date) override;
  Text formatted(Instant date, std::string_view format) override;
};

// --- The user ---

class AppleUser : public User {
 public:
  Text loginName() override;
  Text homeFolder() override;
  Text libraryFolder() override;
  Container groupContainer(std::string_view groupIdentifier) override;
  Text locale() override;  // also null if the setting is not text
};

// --- Identifiers ---

class AppleUuids : public Uuids {
 public:
  Text create() override;
};

// --- XML ---

class AppleXml : public Xml {
 public:
  /// The parser is shown the whole document, digits and all.
  Text serialised(std::string document, DigitRun /*digits*/) override {
    return foundation::tidied(document);
  }
};

}  // namespace wenlolib::platform::apple

#endif
