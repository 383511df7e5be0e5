// The plug-in that hosts would load: whether it loads, and whether its versions agree.
#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "doctor/Examination.h"
#include "doctor/PluginProbe.h"
#include "library/Wording.h"
#include "platform/posix/PosixPropertyLists.h"
#include "terminal/VisibleText.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/version.h"

namespace wenlolib::tools {
namespace {

namespace fs = std::filesystem;

constexpr auto insideBundle = "Contents/Linux/WENLOLIB";
constexpr auto installAgain = "Install the plug-in again, as a whole.";

/// The bundle that was installed or built with this command; "" if there is none.
std::string bundleBesideCommand() {
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const char* place : {WENLOLIB_INSTALLED_BUNDLE, "../WENLOLIB.bundle"}) {
    const fs::path bundle = (folder / place).lexically_normal();
    if (!error && fs::exists(bundle / insideBundle, error)) return bundle;
  }
  return "";
}

/// The shared object in a bundle; any other path is that of the shared object itself.
std::string sharedObjectAt(const std::string& path) {
  std::error_code error;
  return fs::is_directory(path, error) ? (fs::path(path) / insideBundle).string() : path;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

Finding loadFinding(const std::string& path, const PluginProbe& probe) {
  if (probe.trouble.empty()) {
    return {Level::ok, "plugin", path, "version " + visibleLine(probe.version) + ", loads", ""};
  }
  const std::vector<std::string> missing = missingLibraries(path);
  if (missing.empty()) {
    return {Level::error, "plugin", path, "cannot be used: " + visibleLine(probe.trouble),
            installAgain};
  }
  return {Level::error, "plugin", path,
          "cannot be loaded: the system does not find " + visibleLine(joined(missing)),
          "Install the packages that these libraries are in, or make the folders that they are in "
          "known to the loader (ldconfig)."};
}

/// The version that records carry is that of the file beside the plug-in.
Finding informationFinding(const std::string& path, const std::string& version) {
  const platform::ListReading file = platform::posix::readList(path);
  Finding finding{Level::ok, "plugin_information", path, "version " + visibleLine(version), ""};
  const Text known = textEntry(file.dictionary, shortVersionKey);
  const Text fixed = textEntry(file.dictionary, bundleVersionKey);
  if (known == Text(version) && fixed == known) return finding;
  finding.level = Level::error;
  finding.remedy = installAgain;
  if (!file.dictionary) {
    finding.message = listTrouble(file) + ", so records have no version";
  } else {
    finding.message = "CFBundleShortVersionString is " + visibleLine(known.value_or("not set")) +
                      " and CFBundleVersion " + visibleLine(fixed.value_or("not set")) +
                      ", but the plug-in is " + visibleLine(version);
  }
  return finding;
}

Finding commandFinding(const std::string& version) {
  Finding finding{Level::ok, "plugin_version", "Plug-in and command",
                  "both " + visibleLine(version), ""};
  if (version == WENLOLIB_VERSION) return finding;
  finding.level = Level::warning;
  finding.message = "the plug-in is " + visibleLine(version) + ", this command " + WENLOLIB_VERSION;
  finding.remedy = "Install both from the same version: this command explains its own library.";
  return finding;
}

}  // namespace

void checkPlugin(const std::string& wanted, Findings& findings) {
  const std::string place = wanted.empty() ? bundleBesideCommand() : wanted;
  if (place.empty()) {
    findings.push_back({Level::ok, "plugin", "Plug-in",
                        "none is installed with this command; --plugin PATH examines another", ""});
    return;
  }
  const std::string path = fs::absolute(sharedObjectAt(place)).lexically_normal();
  std::error_code error;
  if (!wanted.empty() && !fs::exists(wanted, error)) {
    findings.push_back({Level::error, "plugin", fs::absolute(wanted).lexically_normal(),
                        "there is nothing at this path",
                        "Name a bundle, such as WENLOLIB.bundle, or a shared object."});
    return;
  }
  if (!fs::exists(path, error)) {
    findings.push_back({Level::error, "plugin", path, "missing", installAgain});
    return;
  }
  const PluginProbe probe = probePlugin(path);
  findings.push_back(loadFinding(path, probe));
  if (!probe.trouble.empty()) return;
  const fs::path information = fs::path(path).parent_path().parent_path() / "Info.plist";
  findings.push_back(informationFinding(information, probe.version));
  findings.push_back(commandFinding(probe.version));
}

}  // namespace wenlolib::tools
