/// Files that are not property lists, or that hold nothing usable.
#ifndef WENLOLIB_TESTS_ENDTOEND_BADFILES_H
#define WENLOLIB_TESTS_ENDTOEND_BADFILES_H

#include <ostream>
#include <string>
#include <vector>

namespace wenlolib::tests {

struct BadFile {
  const char* name;
  void (*make)(const std::string& path);
  bool removable = true;  // a file can replace it by renaming
};

/// For the names of tests.
inline void PrintTo(const BadFile& file, std::ostream* stream) {
  *stream << file.name;
}

/// Each is made at a path where nothing is, and gives no dictionary.
const std::vector<BadFile>& badFiles();

/// A binary property list of these objects. The first is the root; a reference has one byte.
std::string binaryPropertyList(const std::vector<std::string>& objects);

}  // namespace wenlolib::tests

#endif
