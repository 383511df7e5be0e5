#include "platform/linux/LinuxBundles.h"

#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/linux/LinuxPropertyLists.h"
#include "platform/linux/LoadedFrom.h"
#include "platform/posix/CancellationHold.h"
#include "platform/posix/Errors.h"

namespace wenlolib::platform::gnulinux {
namespace {

bool isFolder(const std::string& path) {
  struct stat status {};
  if (posix::uninterrupted([&] { return ::stat(path.c_str(), &status); }) == 0) {
    return S_ISDIR(status.st_mode);
  }
  posix::throwUnlessAnswer(errno);
  return false;
}

std::optional<Dictionary> informationIn(const Text& bundle) {
  const posix::CancellationHold hold;
  if (!bundle) return std::nullopt;
  auto information = dictionaryInFile(*bundle + "/Contents/Info.plist");
  if (!information && isFolder(*bundle)) information.emplace();
  return information;
}

Text resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  if (real) return real.get();
  posix::throwUnlessAnswer(errno);
  return std::nullopt;
}

Text bundleByName(std::string_view sharedObject) {
  constexpr std::string_view inside = "/Contents/Linux";
  const std::string_view folder = sharedObject.substr(0, sharedObject.rfind('/'));
  if (!folder.ends_with(inside)) return std::nullopt;
  return std::string(folder.substr(0, folder.size() - inside.size()));
}

}  // namespace

Text bundleAround(const std::string& sharedObject) {
  // Links are resolved only where they have to be: that takes a system call for every folder.
  if (Text bundle = bundleByName(sharedObject)) return bundle;
  const Text real = resolved(sharedObject);
  return real ? bundleByName(*real) : std::nullopt;
}

std::optional<Dictionary> LinuxBundles::informationAt(const std::string& path) {
  return informationIn(root_.below(path));
}

std::optional<Dictionary> LinuxBundles::ownInformation() {
  const Text file = loadedFrom();
  return file ? informationIn(bundleAround(*file)) : std::nullopt;
}

}  // namespace wenlolib::platform::gnulinux
