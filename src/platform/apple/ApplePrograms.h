/// Running programs on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEPROGRAMS_H
#define WENLOLIB_PLATFORM_APPLE_APPLEPROGRAMS_H

#include "platform/System.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::apple {

class ApplePrograms : public Programs {
 public:
  /// `root` must outlive this object. A program is looked up below it, but runs in the real system.
  explicit ApplePrograms(const posix::Root& root) : root_(root) {}

  std::optional<std::int32_t> run(const std::string& path,
                                  const std::vector<std::string>& arguments, bool wait) override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::apple

#endif
