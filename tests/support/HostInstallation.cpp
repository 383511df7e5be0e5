#include "support/HostInstallation.h"

namespace wenlolib::tests {

Dictionary agreedPreferences(Instant now, double days) {
  return {{"InstalledDate", now - Seconds(days * secondsADay)},
          {"LatestSelectedAgreement", true},
          {"LatestSelectedLanguage", "fr_FR"}};
}

void install(MemoryPlatform& platform) {
  for (const std::string& folder : {printerLogFolder, applicationFolder, configurationFolder}) {
    platform.files.addFolder(folder);
  }
  platform.propertyLists.add(preferencePath, agreedPreferences(platform.clock.time, 100));
  platform.propertyLists.add(identifierPath, {{"WENLIBUUID", "{ID}"}});
  platform.bundles.informationByPath[hostBundle] = {{"CFBundleShortVersionString", "2.1.4"},
                                                    {"CFBundleVersion", "2.1.4"}};
  platform.bundles.informationByPath[installedBundle] = {{"CFBundleShortVersionString", "3.0.1"},
                                                         {"CFBundleVersion", "3.0.1"}};
  platform.bundles.own = {{"CFBundleShortVersionString", "3.1.0"}, {"CFBundleVersion", "3.1.0"}};
}

}  // namespace wenlolib::tests
