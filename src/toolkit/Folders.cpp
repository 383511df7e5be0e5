#include "toolkit/Folders.h"

#include <utility>

#include "base/Path.h"
#include "platform/Platform.h"

namespace wenlolib {

Text groupContainerFolder() {
  platform::User& user = *platform::current().user;
  platform::Container container = user.groupContainer(groupContainerIdentifier);
  if (container.offered) return std::move(container.path);
  const Text name = user.loginName();
  if (!name) return std::nullopt;
  return "/Users/" + *name + "/Library/Group Containers/" + groupContainerIdentifier;
}

Text supportFolder() {
  return joined(groupContainerFolder(), "Library/Application Support/QMR");
}

Text printerLogFolder() {
  return joined(supportFolder(), "PLM");
}

Text applicationLogFolder() {
  return joined(supportFolder(), "ALM");
}

Text configurationFolder() {
  return joined(supportFolder(), "Config");
}

}  // namespace wenlolib
