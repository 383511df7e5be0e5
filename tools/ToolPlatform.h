/// The platform that the command runs the library on.
#ifndef WENLOLIB_TOOLS_TOOLPLATFORM_H
#define WENLOLIB_TOOLS_TOOLPLATFORM_H

#include <optional>
#include <string>

#include "platform/Forwarding.h"
#include "platform/linux/LinuxPlatform.h"

namespace wenlolib::tools {

/// The information of a bundle of this version.
[[nodiscard]] Dictionary bundleInformation(const std::string& version);

/// Names this build as the running library's own bundle. The command has the library linked into
/// it and no bundle around it; the plug-in of the same build has one of this version.
class BuildBundles : public platform::ForwardingBundles {
 public:
  using ForwardingBundles::ForwardingBundles;
  std::optional<Dictionary> ownInformation() override;
};

/// The Linux port below a root folder, with the running library's version.
class ToolPlatform {
 public:
  /// "/" is the system's own root.
  explicit ToolPlatform(const std::string& root);
  ToolPlatform(const ToolPlatform&) = delete;
  ToolPlatform& operator=(const ToolPlatform&) = delete;

  [[nodiscard]] const platform::Platform& services() const { return services_; }

  /// Where a path of the library's really lies.
  [[nodiscard]] std::string real(const std::string& path) const;

  /// What stands before the library's paths: the root folder, "" for the system's own.
  [[nodiscard]] const std::string& root() const { return folder_; }

 private:
  std::string folder_;
  platform::posix::Root root_;
  platform::gnulinux::LinuxPlatform port_;
  BuildBundles bundles_;
  platform::Platform services_;
};

}  // namespace wenlolib::tools

#endif
