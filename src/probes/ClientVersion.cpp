#include "probes/ClientVersion.h"

#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "toolkit/SystemInformation.h"

namespace wenlolib {
namespace {

std::string shortVersionIn(const std::optional<Dictionary>& information) {
  return twoComponents(textEntry(information, shortVersionKey).value_or(""));
}

}  // namespace

std::string twoComponents(std::string_view version) {
  const std::size_t first = version.find('.');
  if (first == std::string_view::npos || first + 1 == version.size()) return "";
  return std::string(version.substr(0, version.find('.', first + 1)));
}

std::string clientVersion() {
  platform::Bundles& bundles = *platform::current().bundles;
  std::optional<Dictionary> information = bundles.informationAt(std::string(hostBundlePath));
  if (!information) information = bundles.informationAt(std::string(installedBundlePath));
  return shortVersionIn(information);
}

std::string libraryVersion() {
  return shortVersionIn(platform::current().bundles->ownInformation());
}

std::string markedOSVersion() {
  const Text version = fullOSVersion();
  return version ? "M." + *version : "";
}

}  // namespace wenlolib
