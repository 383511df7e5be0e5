#include "toolkit/HostPreferences.h"

#include "platform/Platform.h"
#include "toolkit/Names.h"
#include "toolkit/Paths.h"

namespace wenlolib {

std::optional<Dictionary> hostPreferences() {
  const platform::Platform& platform = platform::current();
  const Text path = configurationPath(preferenceFile);
  if (!path || platform.files->kindAt(*path) != platform::Kind::other) return std::nullopt;
  return platform.propertyLists->read(*path).dictionary;
}

}  // namespace wenlolib
