/// The folder that a port uses as "/".
#ifndef WENLOLIB_PLATFORM_POSIX_ROOT_H
#define WENLOLIB_PLATFORM_POSIX_ROOT_H

#include <string>
#include <utility>

#include "wenlolib/Text.h"

namespace wenlolib::platform::posix {

/// Every path that a port is given is looked up below its root, so that tests and tools can work on
/// a tree of their own. An empty root means the system's own.
class Root {
 public:
  explicit Root(std::string folder) : folder_(std::move(folder)) {
    while (folder_.ends_with('/')) folder_.pop_back();
  }

  /// Where `path` really lies; null for a path with a NUL in it, at which nothing can be.
  [[nodiscard]] Text below(const std::string& path) const {
    if (path.find('\0') != std::string::npos) return std::nullopt;
    if (folder_.empty() || path.starts_with('/')) return folder_ + path;
    return folder_ + "/" + path;
  }

 private:
  std::string folder_;
};

}  // namespace wenlolib::platform::posix

#endif
