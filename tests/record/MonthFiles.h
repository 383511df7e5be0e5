/// Records of application usage, and their files.
#ifndef WENLOLIB_TESTS_FRONT_MONTHFILES_H
#define WENLOLIB_TESTS_FRONT_MONTHFILES_H

#include <memory>
#include <string>

#include "support/HostInstallation.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {

inline std::shared_ptr<WENLOLIB> applicationRecord(const Text& contents = "contents",
                                                   const Text& name = "App") {
  auto record = WENLOLIB::initWithContents(contents, name);
  record->setFileType(2);
  return record;
}

/// The file of the month "YYMM".
inline std::string monthFile(const std::string& yearMonth, const std::string& name = "App") {
  return applicationFolder + "/Quillmere_Log_" + name + "_" + yearMonth + ".ALM";
}

}  // namespace wenlolib::tests

#endif
