#include "ReasonText.h"

#include <cerrno>
#include <system_error>

#include "Format.h"
#include "base/EnumTable.h"
#include "base/Integer.h"
#include "plist/PropertyList.h"

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

/// What to do where the error alone does not say it.
std::string_view advice(const Reason& reason) {
  switch (reason.error) {
    case ENOENT:
      return "Its folder is not there. wenlolib init makes PLM, ALM and Config; a \"/\" in the "
             "name leads into a sub-folder, which somebody else has to make.";
    case ENOTDIR:
      return "Something in its path is not a folder: move that away.";
    case EISDIR:
      return "A folder is in its place: move it away.";
    case EACCES:
    case EPERM:
      return "Let this user write in its folder.";
    case ENOSPC:
    case EDQUOT:
      return "Make room on the disk.";
    case EFBIG:
      return "Raise the limit of file sizes (ulimit -f).";
    case EMFILE:
      return "Raise the limit of open files (ulimit -n).";
    case ENAMETOOLONG:
      return "Choose a shorter name.";
    case EROFS:
      return "The disk is mounted for reading alone.";
    default:
      return "";
  }
}

std::string placeText(const platform::ListFault& fault) {
  if (fault.line > 0) return " (line " + decimal(static_cast<std::int64_t>(fault.line)) + ")";
  return " (byte " + decimal(static_cast<std::int64_t>(fault.byte)) + ")";
}

std::string unreadText(const Reason& reason) {
  if (reason.error == EISDIR) return "is a folder";
  if (reason.error == 0) return "is not a regular file";
  return "cannot be read: " + reasonText(reason);
}

std::string largeText(const platform::ListFault& fault) {
  if (!fault.what.empty()) return "is too large: " + std::string(fault.what) + placeText(fault);
  return "is larger than " + sizeText(plist::bounds.bytes);
}

}  // namespace

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
      return "holds values that cannot be read; they are left out";
    case ListState::notRead:
      return isMissing(reading) ? "is not there" : unreadText(reading.reason);
    case ListState::tooLarge:
      return largeText(reading.fault);
    case ListState::empty:
      return "is empty";
    case ListState::oldForm:
      return "is not in XML or in the binary form; the old form in braces is not read";
    case ListState::damaged:
      return "is damaged: " + std::string(reading.fault.what) + placeText(reading.fault);
    case ListState::otherRoot:
      return "is a property list, but its root is not a dictionary";
  }
  return "";
}

}  // namespace wenlolib::tools
