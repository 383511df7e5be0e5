#include "library/Wording.h"

#include <fmt/format.h>

#include <cerrno>
#include <cmath>
#include <ctime>
#include <system_error>

#include "base/EnumTable.h"
#include "plist/PropertyList.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

using platform::ListReading;
using platform::ListState;
using platform::Reason;

constexpr EnumTable<platform::Step, std::string_view> stepNames({
    {platform::Step::none, "nothing"},
    {platform::Step::askSystem, "asking the system for its version"},
    {platform::Step::askUser, "looking the user up"},
    {platform::Step::askClock, "asking for the time"},
    {platform::Step::takeRandomness, "asking the system for random bytes"},
    {platform::Step::findFile, "looking for the file"},
    {platform::Step::openFile, "opening the file"},
    {platform::Step::readFile, "reading the file"},
    {platform::Step::findFolder, "opening the folder"},
    {platform::Step::makeFile, "making the file"},
    {platform::Step::makeFolder, "making the folder"},
    {platform::Step::writeFile, "writing the file"},
    {platform::Step::flushFile, "writing the file to the disk"},
    {platform::Step::nameFile, "giving the file its name"},
});

constexpr EnumTable<RecordKind, std::string_view> recordCodes({
    {RecordKind::application, "application"},
    {RecordKind::printerLog, "printer"},
});

/// What to do, if the error alone does not say so.
std::string_view advice(const Reason& reason) {
  switch (reason.error) {
    case ENOENT:
      return "Its folder is missing. wenlolib init makes PLM, ALM and Config. A \"/\" in the name "
             "leads into a sub-folder: make that yourself.";
    case ENOTDIR:
      return "Part of its path is not a folder: move that part away.";
    case EISDIR:
      return "A folder is in its place: move it away.";
    case EACCES:
    case EPERM:
      return "Let this user write in its folder.";
    case ENOSPC:
    case EDQUOT:
      return "Make room on the disk.";
    case EFBIG:
      return "Raise the limit on file sizes (ulimit -f).";
    case EMFILE:
      return "Raise the limit on open files (ulimit -n).";
    case ENAMETOOLONG:
      return "Choose a shorter name.";
    case EROFS:
      return "Remount the disk read-write.";
    default:
      return "";
  }
}

std::string placeText(const platform::ListFault& fault) {
  return fault.line > 0 ? fmt::format("(line {})", fault.line)
                        : fmt::format("(byte {})", fault.byte);
}

std::string unreadText(const Reason& reason) {
  if (reason.error == EISDIR) return "a folder";
  if (reason.error == 0) return "not a regular file";
  return "not readable: " + reasonText(reason);
}

std::string largeText(const platform::ListFault& fault) {
  if (!fault.what.empty()) return fmt::format("too large: {} {}", fault.what, placeText(fault));
  return "larger than " + sizeText(plist::bounds.bytes);
}

}  // namespace

std::string_view recordCode(RecordKind kind) {
  return recordCodes[kind];
}

std::string reasonText(const Reason& reason) {
  const std::string step(stepNames[reason.step]);
  if (reason.error == 0) return step + " failed";
  return step + " failed: " + std::generic_category().message(reason.error);
}

std::string reasonWithAdvice(const Reason& reason) {
  const std::string todo(advice(reason));
  return reasonText(reason) + (todo.empty() ? "" : ". " + todo);
}

std::string whyNotWritten(const Reason& reason) {
  return "not written: " + reasonWithAdvice(reason);
}

bool isMissing(const ListReading& reading) {
  return reading.state == ListState::notRead && reading.reason.error == ENOENT;
}

std::string listTrouble(const ListReading& reading) {
  switch (reading.state) {
    case ListState::whole:
      return "";
    case ListState::partial:
      return "some values cannot be read and are left out";
    case ListState::notRead:
      return isMissing(reading) ? "missing" : unreadText(reading.reason);
    case ListState::tooLarge:
      return largeText(reading.fault);
    case ListState::empty:
      return "empty";
    case ListState::oldForm:
      return "neither XML nor binary; the old form in braces is not read";
    case ListState::damaged:
      return fmt::format("damaged: {} {}", reading.fault.what, placeText(reading.fault));
    case ListState::otherRoot:
      return "a property list without a dictionary at its root";
  }
  return "";
}

namespace {

constexpr const char* accessRemedy = "Let this user read it and enter the folders above it.";

bool isDenied(const ListReading& reading) {
  return reading.state == ListState::notRead &&
         (reading.reason.error == EACCES || reading.reason.error == EPERM);
}

}  // namespace

std::string preferencesRemedy(const ListReading& reading) {
  if (isMissing(reading)) {
    return "The host writes this file. To make a sample, run wenlolib init --sample-preferences.";
  }
  if (isDenied(reading)) return accessRemedy;
  return "Move it away and let the host write the file again. To make a sample after that, run "
         "wenlolib init --sample-preferences.";
}

std::string supportListRemedy(const ListReading& reading) {
  if (isMissing(reading)) return "Whoever installs the library must provide this file.";
  if (isDenied(reading)) return accessRemedy;
  return "Whoever installs the library must replace this file by one that can be read.";
}

namespace {

constexpr std::size_t longest = 60;

/// In quotes and on one line, long ones cut.
std::string quote(const std::string& text) {
  std::string shown = visibleLine(text.substr(0, longest));
  return "\"" + shown + (text.size() > longest ? "\"..." : "\"");
}

struct Describer {
  std::string operator()(bool value) const { return value ? "boolean true" : "boolean false"; }
  std::string operator()(std::int64_t value) const { return fmt::format("integer {}", value); }
  std::string operator()(std::uint64_t value) const { return fmt::format("integer {}", value); }
  std::string operator()(double value) const { return fmt::format("real {}", value); }
  std::string operator()(Instant value) const { return "date " + instantText(value); }
  std::string operator()(const std::string& value) const { return "text " + quote(value); }
  std::string operator()(const Value::Data& value) const {
    return "data, " + countText(value.size(), "byte");
  }
  std::string operator()(const Value::Array& value) const {
    return "array, " + countText(value.size(), "value");
  }
  std::string operator()(const Dictionary& value) const {
    return "dictionary, " + countText(value.size(), "key");
  }
};

}  // namespace

std::string valueText(const Value& value) {
  return value.visit(Describer());
}

std::string valueText(const Value* value) {
  return value == nullptr ? "not set" : valueText(*value);
}

std::string instantText(Instant instant) {
  constexpr double limit = sizeof(std::time_t) > 4 ? 1e18 : 2e9;
  const double seconds = std::floor(instant.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return "(out of range)";
  return localTime(static_cast<std::time_t>(seconds));
}

std::string versionText(std::int32_t number) {
  if (number == -1) return "unknown";
  const Text text = CommonTooWenlolib::convertVersionNumToStr(number);
  return text ? fmt::format("{} ({})", *text, number) : fmt::format("{}", number);
}

std::string versionText(const Text& text, std::int32_t number) {
  if (!text) return "nothing";
  return number == -1 ? quote(*text) + ", which is not a version"
                      : fmt::format("{} ({})", quote(*text), number);
}

std::string shortPath(const std::string& path, const std::string& supportFolder) {
  const bool within = !supportFolder.empty() && path.starts_with(supportFolder + "/");
  return visibleLine(within ? "QMR" + path.substr(supportFolder.size()) : path);
}

std::string shortFolderText(const std::string& supportFolder) {
  if (supportFolder.empty()) return "";
  return fmt::format("QMR is {}\n\n", visibleLine(supportFolder));
}

}  // namespace wenlolib::tools
