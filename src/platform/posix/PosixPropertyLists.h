/// Property lists in files and in bundles, read by the library's own code.
#ifndef WENLOLIB_PLATFORM_POSIX_POSIXPROPERTYLISTS_H
#define WENLOLIB_PLATFORM_POSIX_POSIXPROPERTYLISTS_H

#include <string>
#include <string_view>

#include "platform/PropertyLists.h"
#include "platform/posix/Root.h"
#include "wenlolib/Text.h"

namespace wenlolib::platform::posix {

// --- Files ---

/// Reads the file at `path`, which is a real path of the system.
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

// --- Bundles ---

/// Where a bundle keeps its code on one system, and where this library's own code was loaded from.
struct BundleCode {
  std::string_view folder;  // such as "/Contents/MacOS"
  /// The path by which the object that holds this code was loaded; null if it is not known.
  Text (*loadedFrom)();
};

/// The bundle around an object that lies in the bundle's folder for code, or that is a link to such
/// an object; null for an object that lies elsewhere.
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
