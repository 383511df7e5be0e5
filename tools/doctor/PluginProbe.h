/// A plug-in loaded in a process of its own, so that whatever it does there harms nobody.
#ifndef WENLOLIB_TOOLS_DOCTOR_PLUGINPROBE_H
#define WENLOLIB_TOOLS_DOCTOR_PLUGINPROBE_H

#include <string>
#include <vector>

namespace wenlolib::tools {

/// What became of loading a plug-in and asking its version.
struct PluginProbe {
  std::string version;  // "" if it gave none
  std::string trouble;  // why not
};

/// Loads the shared object at `path` as a host would and asks for its version.
[[nodiscard]] PluginProbe probePlugin(const std::string& path);

/// The names of the libraries that the shared object needs and the system does not find. Nothing of
/// it is run.
[[nodiscard]] std::vector<std::string> missingLibraries(const std::string& path);

}  // namespace wenlolib::tools

#endif
