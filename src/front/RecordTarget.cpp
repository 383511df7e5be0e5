#include "front/RecordTarget.h"

#include <utility>

#include "base/Integer.h"
#include "platform/Platform.h"
#include "toolkit/DateLayouts.h"
#include "toolkit/Names.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

constexpr int lastNumber = 999;

/// The text that a null object leaves in a name.
std::string shown(const Text& text) {
  return text.value_or("(null)");
}

std::string printerLogPath(const Text& folder, const std::string& name, int number) {
  return shown(folder) + "/" + name + "_" + decimal(number) + ".PLM";
}

Text currentYearMonth(platform::Calendar& calendar) {
  const std::int32_t system = CommonTooWenlolib::systemVersionNum();
  const Instant now = platform::current().clock->now();
  if (system == -1 || system >= componentDatesOSVersion) {
    return shortDate(calendar, now, false);
  }
  return calendar.formatted(now, "%y%m");
}

}  // namespace

RecordTarget printerLogTarget(const Text& folder, const std::string& name, int firstNumber) {
  platform::Files& files = *platform::current().files;
  for (int number = firstNumber; number <= lastNumber; ++number) {
    std::string path = printerLogPath(folder, name, number);
    if (files.kindAt(path) == platform::Kind::nothing) {
      return {std::move(path), platform::Publication::asNew, number};
    }
  }
  return {printerLogPath(folder, name, lastNumber), platform::Publication::replacing, lastNumber};
}

RecordTarget applicationTarget(const Text& folder, const std::string& name,
                               platform::Calendar& calendar) {
  return {shown(folder) + "/Quillmere_Log_" + name + "_" + shown(currentYearMonth(calendar)) +
          ".ALM"};
}

}  // namespace wenlolib
