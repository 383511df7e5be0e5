#include "platform/apple/AppleBundles.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/apple/PropertyListFile.h"
#include "platform/apple/Strings.h"
#include "platform/apple/Values.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::apple {
namespace {

const char anchor = 0;  // an address in this very object

bool isMissing(const std::string& file) {
  struct stat status {};
  return ::stat(file.c_str(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

/// Core Foundation reads the information with the bundle, of whatever size and depth it is.
bool isInformationWithinBounds(const std::string& bundle) {
  const std::string file = bundle + "/Contents/Info.plist";
  return isMissing(file) || readPropertyListFile(file).has_value();
}

std::optional<Dictionary> informationIn(const std::string& path) {
  if (!isInformationWithinBounds(path)) return Dictionary();
  const Owned<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()),
      static_cast<Boolean>(true)));
  if (!url) return std::nullopt;
  const Owned<CFBundleRef> bundle(CFBundleCreate(nullptr, url.get()));
  if (!bundle) return std::nullopt;
  // Core Foundation adds entries of its own, among them what no property list can hold.
  auto information = convertibleEntriesOf(CFBundleGetInfoDictionary(bundle.get()));
  if (!information) information.emplace();
  return information;
}

Text resolved(const char* path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path, nullptr), &std::free);
  return real ? Text(real.get()) : Text();
}

}  // namespace

Text bundleAround(std::string_view executable) {
  constexpr std::string_view inside = "/Contents/MacOS";
  const std::string_view folder = executable.substr(0, executable.rfind('/'));
  if (!folder.ends_with(inside)) return std::nullopt;
  return std::string(folder.substr(0, folder.size() - inside.size()));
}

std::optional<Dictionary> AppleBundles::informationAt(const std::string& path) {
  const posix::CancellationHold hold;
  const Text real = root_.below(path);
  return real ? informationIn(*real) : std::nullopt;
}

std::optional<Dictionary> AppleBundles::ownInformation() {
  const posix::CancellationHold hold;
  Dl_info information{};
  if (dladdr(&anchor, &information) == 0 || information.dli_fname == nullptr) return std::nullopt;
  Text bundle = bundleAround(information.dli_fname);
  if (!bundle) {
    const Text real = resolved(information.dli_fname);
    if (real) bundle = bundleAround(*real);
  }
  return bundle ? informationIn(*bundle) : std::nullopt;
}

}  // namespace wenlolib::platform::apple
