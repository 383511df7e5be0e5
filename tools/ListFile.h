/// A property-list file, and why it cannot be read.
#ifndef WENLOLIB_TOOLS_LISTFILE_H
#define WENLOLIB_TOOLS_LISTFILE_H

#include <optional>
#include <string>

#include "base/Value.h"

namespace wenlolib::tools {

struct ListFile {
  std::optional<Dictionary> dictionary;
  bool missing = false;
  std::string trouble;  // "" where there is a dictionary
};

/// Reads the file at `path`, which is the system's own path.
[[nodiscard]] ListFile readListFile(const std::string& path);

}  // namespace wenlolib::tools

#endif
