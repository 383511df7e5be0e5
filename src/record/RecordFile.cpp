#include "record/RecordFile.h"

#include <utility>

#include "base/Answered.h"
#include "base/Integer.h"
#include "base/Trace.h"
#include "platform/Platform.h"
#include "toolkit/DateLayouts.h"
#include "toolkit/Folders.h"
#include "toolkit/Permissions.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

/// What a null text becomes in a name.
std::string inName(const Text& text) {
  return text.value_or("(null)");
}

Text currentYearMonth(platform::Calendar& calendar) {
  const std::int32_t system = CommonTooWenlolib::systemVersionNum();
  const Instant now = platform::current().clock->now();
  if (system == -1 || system >= componentDatesOSVersion) {
    return shortDate(calendar, now, false);
  }
  return calendar.formatted(now, "%y%m");
}

platform::Outcome write(RecordFile& file, const std::string& name, const std::string& document) {
  platform::Files& files = *platform::current().files;
  for (;;) {
    const auto outcome = files.writeAtomically(file.path, document, openFileMode, file.publication);
    if (!(outcome == platform::Outcome::taken)) return outcome;
    file = printerLogFile(name, file.number + 1);
  }
}

}  // namespace

RecordFile printerLogFile(const std::string& name, int firstNumber) {
  platform::Files& files = *platform::current().files;
  const std::string head = inName(printerLogFolder()) + "/" + name + "_";
  for (int number = firstNumber; number <= lastPrinterLogNumber; ++number) {
    std::string path = head + decimal(number) + ".PLM";
    if (files.kindAt(path) == platform::Kind::nothing) {
      return {std::move(path), platform::Publication::asNew, number};
    }
  }
  return {head + decimal(lastPrinterLogNumber) + ".PLM", platform::Publication::replacing,
          lastPrinterLogNumber};
}

RecordFile applicationFile(const std::string& name, platform::Calendar& calendar) {
  const std::string folder = inName(applicationLogFolder());
  return {folder + "/Quillmere_Log_" + name + "_" + inName(currentYearMonth(calendar)) + ".ALM"};
}

bool writeDocument(RecordFile file, const std::string& name, const std::string& document) {
  // A write that runs out of memory is a failed write too: the permissions are opened all the same.
  const bool isWritten =
      answered(false, [&] { return write(file, name, document) == platform::Outcome::written; });
  WENLOLIB_TRACE(" writeToFile ret = [%d] ", isWritten ? 1 : 0);
  openPermissions(file.path);
  return isWritten;
}

}  // namespace wenlolib
