#include "apple_stubs/bodies/Stubs.h"
#include "platform/Time.h"
#include "platform/apple/Foundation.h"
#include "platform/posix/PosixTime.h"
#include "xml/WellFormed.h"

// Stands in for the port's Objective-C, which has tests of its own on another Foundation.

namespace wenlolib::platform::apple::foundation {

using tests::stubs::world;

// Assumed: The user and the folders.
Text userName() {
  return world().userName;
}

// Assumed: The user and the folders.
Text homeFolder() {
  return world().homeFolder;
}

// Assumed: The user and the folders.
Text libraryFolder() {
  return world().libraryFolder;
}

// Assumed: The container lookup.
Container groupContainer(std::string_view groupIdentifier) {
  world().askedContainer = groupIdentifier;
  return world().container;
}

// Assumed: Dates by directives.
Text calendarFormatted(Instant date, std::string_view format) {
  if (!world().offersCalendarFormat) return std::nullopt;
  return "by the system: " + *posix::PosixCalendar().formatted(date, format);
}

// Assumed: NSXMLDocument.
Text tidied(std::string_view document) {
  return xml::Service().serialised(std::string(document), {});
}

}  // namespace wenlolib::platform::apple::foundation
