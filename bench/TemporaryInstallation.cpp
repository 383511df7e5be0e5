#include "TemporaryInstallation.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "platform/Platform.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::bench {
namespace {

std::string newFolder(const std::string& parent) {
  std::string pattern = parent + "/wenlolib-bench-XXXXXX";
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder in " + parent);
  setenv("HOME", pattern.c_str(), 1);
  return pattern;
}

}  // namespace

TemporaryInstallation::TemporaryInstallation(const std::string& parent) : home_(newFolder(parent)) {
  const platform::Platform& services = platform::native();
  for (const Text& folder : {CommonTooWenlolib::almDirPath(), CommonTooWenlolib::pliDirPath(1),
                             CommonTooWenlolib::confDirPath()}) {
    if (!CommonTooWenlolib::createDir(folder)) throw std::runtime_error("cannot make folders");
  }
  const Dictionary preferences{{"InstalledDate", Value(services.clock->now())},
                               {"LatestSelectedAgreement", Value(true)},
                               {"LatestSelectedLanguage", Value("en_US")}};
  const std::string path = *CommonTooWenlolib::confDirPath() + "/" + std::string(VendorPrefix) +
                           std::string(preferenceFile);
  const auto outcome = services.files->writeAtomically(
      path, *services.propertyLists->asXml(preferences), 0600, platform::Publication::replacing);
  if (outcome != platform::Outcome::written) throw std::runtime_error("cannot write preferences");
}

TemporaryInstallation::~TemporaryInstallation() {
  std::error_code ignored;
  std::filesystem::remove_all(home_, ignored);
}

}  // namespace wenlolib::bench
