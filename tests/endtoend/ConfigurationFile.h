/// The library's configuration file, as a test sees it.
#ifndef WENLOLIB_TESTS_ENDTOEND_CONFIGURATIONFILE_H
#define WENLOLIB_TESTS_ENDTOEND_CONFIGURATIONFILE_H

#include <sys/stat.h>

#include <string>

#include "endtoend/World.h"

namespace wenlolib::tests {

class ConfigurationFileTest : public WorldTest {
 protected:
  std::string path() const { return world.real(identifierPath); }

  void write(const Dictionary& entries) {
    writeFile(path(), world.services.propertyLists->asXml(entries).value());
  }

  /// The identifier that a new record gets.
  static std::string identifier() { return WENLOLIB::init()->getWENLOLIBId(); }

  /// The file's inode, which is another one after a rewrite.
  ino_t file() const {
    struct stat status {};
    return ::stat(path().c_str(), &status) == 0 ? status.st_ino : 0;
  }
};

}  // namespace wenlolib::tests

#endif
