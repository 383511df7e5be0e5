/// Bundles: folders with "Contents/Info.plist".
#ifndef WENLOLIB_PLATFORM_POSIX_POSIXBUNDLES_H
#define WENLOLIB_PLATFORM_POSIX_POSIXBUNDLES_H

#include <string>
#include <string_view>

#include "platform/Bundles.h"
#include "platform/posix/Root.h"
#include "wenlolib/Text.h"

namespace wenlolib::platform::posix {

/// Where a bundle keeps its code on one system, and where the code lies that this library runs.
struct BundleCode {
  std::string_view folder;  // such as "/Contents/MacOS"
  /// The path by which the object was loaded that this code is part of; null where none is known.
  Text (*loadedFrom)();
};

/// The bundle around an object that lies in its folder for code, or is a link that leads to such a
/// one; null for an object that lies elsewhere.
[[nodiscard]] Text bundleAround(const std::string& object, std::string_view codeFolder);

class PosixBundles : public Bundles {
 public:
  /// `root` must outlive this object.
  PosixBundles(const Root& root, BundleCode code) : root_(root), code_(code) {}

  std::optional<Dictionary> informationAt(const std::string& path) override;
  /// Read from where the library was loaded, whatever the root.
  std::optional<Dictionary> ownInformation() override;

 private:
  const Root& root_;
  BundleCode code_;
};

}  // namespace wenlolib::platform::posix

#endif
