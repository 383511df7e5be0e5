#include "front/RecordTarget.h"

#include <utility>

#include "base/Integer.h"
#include "platform/Platform.h"
#include "toolkit/CommonTooWenlolib.h"
#include "toolkit/DateLayouts.h"
#include "toolkit/Names.h"

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

Text currentYearMonth() {
  const platform::Platform& platform = platform::current();
  const std::int32_t system = CommonTooWenlolib::systemVersionNum();
  const Instant now = platform.clock->now();
  if (system == -1 || system >= componentDatesOSVersion) {
    return shortDate(now, false);
  }
  return platform.calendar->formatted(now, "%y%m");
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

RecordTarget applicationTarget(const Text& folder, const std::string& name) {
  return {shown(folder) + "/Quillmere_Log_" + name + "_" + shown(currentYearMonth()) + ".ALM"};
}

}  // namespace wenlolib
