/// The identifier and its file, on a platform without one.
#ifndef WENLOLIB_TESTS_PROBES_IDENTIFIERFILE_H
#define WENLOLIB_TESTS_PROBES_IDENTIFIERFILE_H

#include <string>

#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {

inline const std::string firstMade = "{00000000-0000-4000-8000-000000000001}";
inline const std::string secondMade = "{00000000-0000-4000-8000-000000000002}";

class IdentifierFileTest : public PlatformTest {
 protected:
  IdentifierFileTest() { world.files.addFolder(configurationFolder); }

  static std::string ofNewRecord() { return WENLOLIB::init()->getWENLOLIBId(); }
  std::optional<Dictionary> stored() const { return world.propertyLists.at(identifierPath); }
};

}  // namespace wenlolib::tests

#endif
