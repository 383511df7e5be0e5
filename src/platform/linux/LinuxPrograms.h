/// Running programs on Linux.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXPROGRAMS_H
#define WENLOLIB_PLATFORM_LINUX_LINUXPROGRAMS_H

#include "platform/System.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::gnulinux {

class LinuxPrograms : public Programs {
 public:
  /// `root` must outlive this object. A program is looked up below it, but runs in the real system.
  explicit LinuxPrograms(const posix::Root& root) : root_(root) {}

  std::optional<std::int32_t> run(const std::string& path,
                                  const std::vector<std::string>& arguments, bool wait) override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::gnulinux

#endif
