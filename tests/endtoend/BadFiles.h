/// Files that are no property list, or not one that can be used.
#ifndef WENLOLIB_TESTS_ENDTOEND_BADFILES_H
#define WENLOLIB_TESTS_ENDTOEND_BADFILES_H

#include <ostream>
#include <string>
#include <vector>

namespace wenlolib::tests {

struct BadFile {
  const char* name;
  void (*make)(const std::string& path);
  bool removable = true;  // a file can take its place by renaming
};

/// For the names of tests.
inline void PrintTo(const BadFile& file, std::ostream* stream) {
  *stream << file.name;
}

/// Each is made where nothing is; none has a dictionary to give.
const std::vector<BadFile>& badFiles();

/// A binary property list from its objects, the first being the root, with one byte a reference.
std::string binaryPropertyList(const std::vector<std::string>& objects);

}  // namespace wenlolib::tests

#endif
