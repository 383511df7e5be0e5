/// Property-list files, on any system.
#ifndef WENLOLIB_PLATFORM_POSIX_POSIXPROPERTYLISTS_H
#define WENLOLIB_PLATFORM_POSIX_POSIXPROPERTYLISTS_H

#include <string>

#include "platform/PropertyLists.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::posix {

/// Reads the file at `path`, which is the system's own path.
[[nodiscard]] ListReading readList(const std::string& path);

class PosixPropertyLists : public PropertyLists {
 public:
  /// `root` must outlive this object.
  explicit PosixPropertyLists(const Root& root) : root_(root) {}

  ListReading read(const std::string& path) override;
  Text asXml(const Dictionary& dictionary) override;

 private:
  const Root& root_;
};

}  // namespace wenlolib::platform::posix

#endif
