#include <algorithm>
#include <string>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

constexpr std::uint32_t folderMode = 0700;

/// Creates every level of `path` at which nothing stands, from the root downwards.
bool createMissingLevels(const std::string& path) {
  platform::Files& files = *platform::current().files;
  for (std::size_t cursor = 0; cursor < path.size(); ++cursor) {
    const std::size_t end = std::min(path.find('/', cursor), path.size());
    if (end == cursor) continue;  // the leading "/", or a doubled one
    const std::string level = path.substr(0, end);
    if (files.kindAt(level) == platform::Kind::nothing &&
        files.createFolder(level, folderMode).hasFailed()) {
      return false;
    }
    cursor = end;
  }
  return true;
}

}  // namespace

bool CommonTooWenlolib::createDir(const Text& path) noexcept {
  return answered(false, [&] {
    if (!path || !isUtf8(*path)) return false;
    if (platform::current().files->kindAt(*path) != platform::Kind::nothing) return true;
    return createMissingLevels(*path);
  });
}

}  // namespace wenlolib
