/// Property-list files on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEPROPERTYLISTS_H
#define WENLOLIB_PLATFORM_APPLE_APPLEPROPERTYLISTS_H

#include <string>

#include "platform/PropertyLists.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::apple {

class ApplePropertyLists : public PropertyLists {
 public:
  /// `root` must outlive this object.
  explicit ApplePropertyLists(const posix::Root& root) : root_(root) {}

  std::optional<Dictionary> read(const std::string& path) override;
  Text asXml(const Dictionary& dictionary) override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::apple

#endif
