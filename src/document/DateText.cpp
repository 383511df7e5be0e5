#include "document/DateText.h"

#include "platform/Platform.h"
#include "toolkit/DateLayouts.h"
#include "toolkit/Names.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {

std::string dateFormat(const Text& zone) {
  const std::string format = "%Y-%m-%dT%H:%M:%S";
  if (!zone || zone->size() < 2) return format + "%z";
  const std::size_t head = zone->size() - 2;
  return format + zone->substr(0, head) + ":" + zone->substr(head);
}

Text currentDateText(platform::Calendar& calendar) {
  const std::int32_t system = CommonTooWenlolib::systemVersionNum();
  const Instant now = platform::current().clock->now();
  if (system == -1 || system >= componentDatesOSVersion) {
    return zonedDate(calendar, now);
  }
  // One instant for both readings: the offset is the one in force at the date it stands beside.
  const Text zone = calendar.formatted(now, "%z");
  return calendar.formatted(now, dateFormat(zone));
}

}  // namespace wenlolib
