/// Where a record goes.
#ifndef WENLOLIB_FRONT_RECORDTARGET_H
#define WENLOLIB_FRONT_RECORDTARGET_H

#include <string>

#include "platform/Files.h"
#include "platform/Time.h"
#include "wenlolib/Text.h"

namespace wenlolib {

/// The name is put into paths as it is: a "/" in it leads into a sub-folder. A folder that is not
/// known stands as "(null)", which makes a relative path to nowhere.
struct RecordTarget {
  std::string path;
  platform::Publication publication = platform::Publication::replacing;
  int number = 0;  // of a printer log
};

/// "FOLDER/NAME_NUMBER.PLM" with the first number from `firstNumber` to 999 at which nothing
/// stands, neither file nor folder. Where all are taken it is 999, to be replaced.
[[nodiscard]] RecordTarget printerLogTarget(const Text& folder, const std::string& name,
                                            int firstNumber);

/// "FOLDER/Quillmere_Log_NAME_YYMM.ALM" with the current year and month in the calendar's local
/// time: one file per application and month, which every record replaces.
[[nodiscard]] RecordTarget applicationTarget(const Text& folder, const std::string& name,
                                             platform::Calendar& calendar);

}  // namespace wenlolib

#endif
