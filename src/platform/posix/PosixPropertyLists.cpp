#include "platform/posix/PosixPropertyLists.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <memory>

#include "platform/posix/Errors.h"
#include "platform/posix/WholeFile.h"
#include "plist/PropertyList.h"

namespace wenlolib::platform::posix {

// --- Files ---

ListReading readList(const std::string& path) {
  const WholeFile file = readWhole(path, plist::bounds.bytes);
  if (file.bytes) return plist::read(*file.bytes);
  ListReading reading;
  reading.state = file.reason.error == EFBIG ? ListState::tooLarge : ListState::notRead;
  reading.reason = file.reason;
  return reading;
}

ListReading PosixPropertyLists::read(const std::string& path) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  if (real) return readList(*real);
  ListReading reading;
  reading.reason = {Step::findFile, EINVAL};
  return reading;
}

Text PosixPropertyLists::asXml(const Dictionary& dictionary) {
  return plist::write(dictionary);
}

// --- Bundles ---

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
  // Links are resolved only if they have to be: that takes a system call for every folder.
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
