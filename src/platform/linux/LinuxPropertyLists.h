/// Property-list files on Linux.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXPROPERTYLISTS_H
#define WENLOLIB_PLATFORM_LINUX_LINUXPROPERTYLISTS_H

#include <optional>
#include <string>

#include "platform/PropertyLists.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::gnulinux {

/// The dictionary in the file at `path`, which is the system's own path.
[[nodiscard]] std::optional<Dictionary> dictionaryInFile(const std::string& path);

class LinuxPropertyLists : public PropertyLists {
 public:
  /// `root` must outlive this object.
  explicit LinuxPropertyLists(const posix::Root& root) : root_(root) {}

  std::optional<Dictionary> read(const std::string& path) override;
  Text asXml(const Dictionary& dictionary) override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::gnulinux

#endif
