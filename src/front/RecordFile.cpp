#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "front/RecordTarget.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Names.h"
#include "toolkit/OpenFiles.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {
namespace {

/// Writes `document` to `target`. Where another writer has taken its number since it was found
/// free, the next free one becomes the target: no record is lost to a race.
bool writeTo(RecordTarget& target, const Text& folder, const std::string& name,
             const std::string& document) {
  platform::Files& files = *platform::current().files;
  const auto write = [&] {
    return files.writeAtomically(target.path, document, openFileMode, target.publication);
  };
  platform::Outcome outcome = write();
  while (outcome == platform::Outcome::taken) {
    target = printerLogTarget(folder, name, target.number + 1);
    outcome = write();
  }
  return outcome == platform::Outcome::written;
}

}  // namespace

bool WENLOLIB::writeAppInfo() noexcept {
  return answered(false, [&] {
    if (!_xmlContents || !_applicationName) return false;
    const bool printerLog = _fileType == printerLogFileType;
    const Text folder = printerLog ? printerLogFolder() : applicationLogFolder();
    RecordTarget target = printerLog ? printerLogTarget(folder, *_applicationName, 1)
                                     : applicationTarget(folder, *_applicationName, calendar());
    if (!WENLOLIBCreateXMLDocument()) return false;
    if (!_xmlDocment) return true;  // no document, and so no file: true on purpose
    // A write that ran out of memory is a failed write: what follows one follows it as well.
    const Text document = std::exchange(_xmlDocment, std::nullopt);
    const bool written =
        answered(false, [&] { return writeTo(target, folder, *_applicationName, *document); });
    WENLOLIB_TRACE(" writeToFile ret = [%d] ", written ? 1 : 0);
    openPermissions(target.path);
    return written;
  });
}

}  // namespace wenlolib
