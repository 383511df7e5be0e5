/// The file that a record goes into.
#ifndef WENLOLIB_RECORD_RECORDFILE_H
#define WENLOLIB_RECORD_RECORDFILE_H

#include <string>

#include "platform/Files.h"
#include "platform/Time.h"
#include "wenlolib/Text.h"

namespace wenlolib {

/// The name is put into paths as it is: a "/" in it leads into a sub-folder. A folder that is not
/// known appears as "(null)", which makes a relative path that leads nowhere.
struct RecordFile {
  std::string path;
  platform::Publication publication = platform::Publication::replacing;
  int number = 0;  // of a printer log
};

/// The highest number of a printer log.
inline constexpr int lastPrinterLogNumber = 999;

/// "FOLDER/NAME_NUMBER.PLM" in the folder of printer logs, with the first number from `firstNumber`
/// to 999 at which nothing stands, neither file nor folder. If all are taken, it is 999, and that
/// file is replaced.
[[nodiscard]] RecordFile printerLogFile(const std::string& name, int firstNumber = 1);

/// "FOLDER/Quillmere_Log_NAME_YYMM.ALM" in the folder of application usage, with the current year
/// and month in the calendar's local time: one file per application and month, which every record
/// replaces.
[[nodiscard]] RecordFile applicationFile(const std::string& name, platform::Calendar& calendar);

/// Writes `document` to `file` and opens its permissions, whether the write succeeds or not. If
/// another writer has taken its number since it was found free, the next free one is taken, so that
/// no record is lost to a race. False for a failed write.
[[nodiscard]] bool writeDocument(RecordFile file, const std::string& name,
                                 const std::string& document);

}  // namespace wenlolib

#endif
