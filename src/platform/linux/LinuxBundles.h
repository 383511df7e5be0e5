/// Bundles on Linux: folders with "Contents/Info.plist".
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXBUNDLES_H
#define WENLOLIB_PLATFORM_LINUX_LINUXBUNDLES_H

#include <string>

#include "base/Text.h"
#include "platform/Bundles.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::gnulinux {

/// The bundle around a shared object that lies in its "Contents/Linux" folder, or is a link that
/// leads to such a one; null for a shared object that lies elsewhere.
[[nodiscard]] Text bundleAround(const std::string& sharedObject);

class LinuxBundles : public Bundles {
 public:
  /// `root` must outlive this object.
  explicit LinuxBundles(const posix::Root& root) : root_(root) {}

  std::optional<Dictionary> informationAt(const std::string& path) override;
  /// Read from where the library was loaded, whatever the root.
  std::optional<Dictionary> ownInformation() override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::gnulinux

#endif
