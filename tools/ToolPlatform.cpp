#include "ToolPlatform.h"

#include "toolkit/Names.h"
#include "wenlolib/plugin.h"

namespace wenlolib::tools {
namespace {

std::string rootFolder(std::string root) {
  while (root.ends_with('/')) root.pop_back();
  return root;
}

}  // namespace

Dictionary bundleInformation(const std::string& version) {
  return {{std::string(shortVersionKey), version}, {std::string(bundleVersionKey), version}};
}

std::optional<Dictionary> BuildBundles::ownInformation() {
  return bundleInformation(WENLOLIB_VERSION);
}

ToolPlatform::ToolPlatform(const std::string& root)
    : folder_(rootFolder(root)),
      root_(folder_),
      port_(folder_),
      bundles_(*port_.services().bundles),
      services_(port_.services()) {
  services_.bundles = &bundles_;
}

std::string ToolPlatform::real(const std::string& path) const {
  return root_.below(path).value_or(path);
}

}  // namespace wenlolib::tools
