/// Paths of documents that stand in a file.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_PATHLIST_H
#define WENLOLIB_TOOLS_DOCUMENTS_PATHLIST_H

#include <string>
#include <vector>

namespace wenlolib::tools {

/// Appends the paths in a file, or in standard input for "-", each of which ends in `end` or at the
/// end of the file; empty ones are left out. Returns why the file could not be read, or "".
[[nodiscard]] std::string appendPaths(const std::string& file, char end,
                                      std::vector<std::string>& paths);

}  // namespace wenlolib::tools

#endif
