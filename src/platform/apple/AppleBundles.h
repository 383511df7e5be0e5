/// Bundles on macOS.
#ifndef WENLOLIB_PLATFORM_APPLE_APPLEBUNDLES_H
#define WENLOLIB_PLATFORM_APPLE_APPLEBUNDLES_H

#include <string>
#include <string_view>

#include "base/Text.h"
#include "platform/Bundles.h"
#include "platform/posix/Root.h"

namespace wenlolib::platform::apple {

/// The bundle around an executable that lies in its "Contents/MacOS" folder; null for one that lies
/// elsewhere.
[[nodiscard]] Text bundleAround(std::string_view executable);

/// An Info.plist that Core Foundation might not get through counts as none: the bundle is there,
/// and Core Foundation is not asked.
class AppleBundles : public Bundles {
 public:
  /// `root` must outlive this object.
  explicit AppleBundles(const posix::Root& root) : root_(root) {}

  std::optional<Dictionary> informationAt(const std::string& path) override;
  /// Read from where the library was loaded, whatever the root.
  std::optional<Dictionary> ownInformation() override;

 private:
  const posix::Root& root_;
};

}  // namespace wenlolib::platform::apple

#endif
