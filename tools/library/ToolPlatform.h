/// The platform that the command runs the library on, and what is seen of it in use.
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

  /// Where the folder of all the library's files really lies, while the platform is in use; ""
  /// where the user has no home folder.
  [[nodiscard]] std::string realSupportFolder() const;

  /// What stands before the library's paths: the root folder, "" for the system's own.
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
  std::string path;         // "" where no file was asked about
  platform::Reason reason;  // `none` for a lack of memory
};

/// What to tell the person who asks.
[[nodiscard]] std::string unansweredText(const Unanswered& unanswered);

/// What was seen while the services were in use.
struct Sightings {
  std::optional<Unanswered> unanswered;                // the first
  std::map<std::string, platform::ListReading> lists;  // by path; the latest reading of each
};

/// Stands before a platform. Whatever a service throws is noted and thrown on.
class WatchedPlatform {
 public:
  explicit WatchedPlatform(const platform::Platform& base);
  WatchedPlatform(const WatchedPlatform&) = delete;
  WatchedPlatform& operator=(const WatchedPlatform&) = delete;
  ~WatchedPlatform();

  /// Good for as long as this object.
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
