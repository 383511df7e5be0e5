#include "toolkit/Paths.h"

#include <string>

#include "base/Path.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Names.h"

namespace wenlolib {

Text configurationPath(std::string_view nameAfterPrefix) {
  return joined(configurationFolder(), std::string(VendorPrefix).append(nameAfterPrefix));
}

Text homeExpanded(Text path) {
  if (!path || !path->starts_with('~')) return path;
  if (path->size() > 1 && (*path)[1] != '/') return path;
  const Text home = platform::current().user->homeFolder();
  if (!home) return path;
  return path->size() == 1 ? home : joined(home, std::string_view(*path).substr(1));
}

}  // namespace wenlolib
