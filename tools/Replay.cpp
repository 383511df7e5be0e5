#include "Replay.h"

#include <filesystem>
#include <system_error>

#include "ToolPlatform.h"
#include "platform/posix/PosixPropertyLists.h"
#include "toolkit/Folders.h"
#include "toolkit/Names.h"

namespace wenlolib::tools {
namespace {

Redirections redirectionsOf(const platform::Platform& base, const ReplayedCase& replayed) {
  const platform::Substitute substitute(base);
  Redirections redirections;
  const auto add = [&](std::string_view name, const Text& file) {
    const Text path = configurationPath(name);
    if (path && file) redirections.emplace(*path, *file);
  };
  add(preferenceFile, replayed.preferences);
  add(supportVersionListFile, replayed.supportList);
  return redirections;
}

}  // namespace

std::optional<std::int32_t> ReplayedSystem::gestalt(platform::Selector selector) {
  using platform::Selector;
  if (selector == Selector::systemArchitecture) return target_.gestalt(selector);
  if (!version_.known) return std::nullopt;
  if (selector == Selector::majorVersion) return version_.major;
  return selector == Selector::minorVersion ? version_.minor : version_.bugFix;
}

std::optional<Dictionary> VersionedBundles::informationAt(const std::string& path) {
  if (path == installedBundlePath) return bundleInformation(version_);
  return platform::ForwardingBundles::informationAt(path);
}

std::optional<Dictionary> VersionedBundles::ownInformation() {
  return bundleInformation(version_);
}

platform::Kind RedirectedFiles::kindAt(const std::string& path) {
  const auto found = redirections_.find(path);
  if (found == redirections_.end()) return platform::ForwardingFiles::kindAt(path);
  std::error_code error;
  const auto status = std::filesystem::status(found->second, error);
  if (!std::filesystem::exists(status)) return platform::Kind::nothing;
  return std::filesystem::is_directory(status) ? platform::Kind::folder : platform::Kind::other;
}

platform::ListReading RedirectedPropertyLists::read(const std::string& path) {
  const auto found = redirections_.find(path);
  if (found == redirections_.end()) return platform::ForwardingPropertyLists::read(path);
  return platform::posix::readList(found->second);
}

Replay::Replay(const platform::Platform& base, const ReplayedCase& replayed)
    : redirections_(redirectionsOf(base, replayed)),
      system_(*base.system, replayed.os.value_or(OSVersion())),
      clock_(replayed.date.value_or(Instant())),
      bundles_(*base.bundles, replayed.libraryVersion.value_or("")),
      files_(*base.files, redirections_),
      propertyLists_(*base.propertyLists, redirections_),
      services_(base) {
  if (replayed.os) services_.system = &system_;
  if (replayed.date) services_.clock = &clock_;
  if (replayed.libraryVersion) services_.bundles = &bundles_;
  services_.files = &files_;
  services_.propertyLists = &propertyLists_;
}

}  // namespace wenlolib::tools
