/// The platform that the command runs the library on, and what is seen while it is in use.
#ifndef WENLOLIB_TOOLS_LIBRARY_TOOLPLATFORM_H
#define WENLOLIB_TOOLS_LIBRARY_TOOLPLATFORM_H

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/Forwarding.h"
#include "platform/Platform.h"
#include "platform/linux/LinuxPlatform.h"

namespace wenlolib::tools {

/// The information of a bundle of this version.
[[nodiscard]] Dictionary bundleInformation(const std::string& version);

/// Gives the running library a bundle of this build's version. The command, which the library is
/// linked into, has no bundle; the plug-in of the same build has one of this version.
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

  /// The real place of a path of the library's.
  [[nodiscard]] std::string real(const std::string& path) const;

  /// The real place of the folder with all of the library's files, while the platform is in use;
  /// "" if the user has no home folder.
  [[nodiscard]] std::string realSupportFolder() const;

  /// The root folder, which goes before the library's paths; "" for the system's own.
  [[nodiscard]] const std::string& root() const { return folder_; }

 private:
  std::string folder_;
  platform::posix::Root root_;
  platform::gnulinux::LinuxPlatform port_;
  BuildBundles bundles_;
  platform::Platform services_;
};

/// What a platform could not answer; the library has then answered no.
struct Unanswered {
  std::string path;         // "" if no file was asked about
  platform::Reason reason;  // `none` for a lack of memory
};

/// The same for a person.
[[nodiscard]] std::string unansweredText(const Unanswered& unanswered);

/// What was seen while the services were in use.
struct Sightings {
  std::optional<Unanswered> unanswered;                // the first
  std::map<std::string, platform::ListReading> lists;  // by path; the latest reading of each
};

/// Wraps a platform. Whatever a service throws is noted and thrown again.
class WatchedPlatform {
 public:
  explicit WatchedPlatform(const platform::Platform& base);
  WatchedPlatform(const WatchedPlatform&) = delete;
  WatchedPlatform& operator=(const WatchedPlatform&) = delete;
  ~WatchedPlatform();

  /// Valid as long as this object.
  [[nodiscard]] const platform::Platform& services() const { return services_; }
  [[nodiscard]] const Sightings& sightings() const { return sightings_; }

 private:
  struct Services;

  Sightings sightings_;
  std::unique_ptr<Services> watching_;
  platform::Platform services_;
};

}  // namespace wenlolib::tools

#endif
