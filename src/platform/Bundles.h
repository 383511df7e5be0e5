/// Bundles: folders with an information property list inside.
#ifndef WENLOLIB_PLATFORM_BUNDLES_H
#define WENLOLIB_PLATFORM_BUNDLES_H

#include <optional>
#include <string>

#include "wenlolib/Value.h"

namespace wenlolib::platform {

class Bundles {
 public:
  virtual ~Bundles() = default;

  /// The information dictionary of the bundle at `path`, empty where the bundle has none that can
  /// be read. Nothing when there is no bundle at `path`.
  virtual std::optional<Dictionary> informationAt(const std::string& path) = 0;

  /// The same for the bundle that this library was loaded from, wherever that is.
  virtual std::optional<Dictionary> ownInformation() = 0;
};

}  // namespace wenlolib::platform

#endif
