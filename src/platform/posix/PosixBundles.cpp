#include "platform/posix/PosixBundles.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/posix/CancellationHold.h"
#include "platform/posix/Errors.h"
#include "platform/posix/PosixPropertyLists.h"

namespace wenlolib::platform::posix {
namespace {

bool isFolder(const std::string& path) {
  struct stat status {};
  if (uninterrupted([&] { return ::stat(path.c_str(), &status); }) == 0) {
    return S_ISDIR(status.st_mode);
  }
  throwUnlessAnswer(Step::findFolder, errno);
  return false;
}

std::optional<Dictionary> informationIn(const Text& bundle) {
  if (!bundle) return std::nullopt;
  auto information = readList(*bundle + "/Contents/Info.plist").dictionary;
  if (!information && isFolder(*bundle)) information.emplace();
  return information;
}

Text withoutLinks(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  if (real) return real.get();
  throwUnlessAnswer(Step::findFile, errno);
  return std::nullopt;
}

Text bundleByName(std::string_view object, std::string_view codeFolder) {
  const std::string_view folder = object.substr(0, object.rfind('/'));
  if (!folder.ends_with(codeFolder)) return std::nullopt;
  return std::string(folder.substr(0, folder.size() - codeFolder.size()));
}

}  // namespace

Text bundleAround(const std::string& object, std::string_view codeFolder) {
  // Links are resolved only where they have to be: that takes a system call for every folder.
  if (Text bundle = bundleByName(object, codeFolder)) return bundle;
  const Text real = withoutLinks(object);
  return real ? bundleByName(*real, codeFolder) : std::nullopt;
}

std::optional<Dictionary> PosixBundles::informationAt(const std::string& path) {
  const CancellationHold hold;
  return informationIn(root_.below(path));
}

std::optional<Dictionary> PosixBundles::ownInformation() {
  const CancellationHold hold;
  const Text object = code_.loadedFrom();
  return object ? informationIn(bundleAround(*object, code_.folder)) : std::nullopt;
}

}  // namespace wenlolib::platform::posix
