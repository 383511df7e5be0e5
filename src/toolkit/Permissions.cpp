#include "toolkit/Permissions.h"

#include "base/Answered.h"
#include "platform/Platform.h"

namespace wenlolib {

void openPermissions(const std::string& path) noexcept {
  static_cast<void>(answered(false, [&] {
    platform::Files& files = *platform::current().files;
    return files.kindAt(path) == platform::Kind::other && files.setPermissions(path, openFileMode);
  }));
}

}  // namespace wenlolib
