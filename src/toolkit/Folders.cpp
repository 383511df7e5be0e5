#include "toolkit/Folders.h"

#include <algorithm>
#include <utility>

#include "base/Answered.h"
#include "base/Path.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "toolkit/Permissions.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {

// --- For the library's own use ---

Text groupContainerFolder() {
  platform::User& user = *platform::current().user;
  platform::Container container = user.groupContainer(groupContainerIdentifier);
  if (container.offered) return std::move(container.path);
  const Text name = user.loginName();
  if (!name) return std::nullopt;
  return "/Users/" + *name + "/Library/Group Containers/" + groupContainerIdentifier;
}

Text supportFolder() {
  return join(groupContainerFolder(), "Library/Application Support/QMR");
}

Text printerLogFolder() {
  return join(supportFolder(), "PLM");
}

Text applicationLogFolder() {
  return join(supportFolder(), "ALM");
}

Text configurationFolder() {
  return join(supportFolder(), "Config");
}

Text configurationPath(std::string_view nameAfterPrefix) {
  return join(configurationFolder(), std::string(VendorPrefix).append(nameAfterPrefix));
}

Text expandHome(Text path) {
  if (!path || !path->starts_with('~')) return path;
  if (path->size() > 1 && (*path)[1] != '/') return path;
  const Text home = platform::current().user->homeFolder();
  if (!home) return path;
  return path->size() == 1 ? home : join(home, std::string_view(*path).substr(1));
}

// --- For hosts ---

namespace {

template <class Path>
Text path(Path found) noexcept {
  return answered(Text(), found);
}

Text libraryFile(std::string_view nameAfterPrefix) noexcept {
  return path([&] {
    const std::string part =
        std::string("Preferences/").append(VendorPrefix).append(nameAfterPrefix);
    return join(platform::current().user->libraryFolder(), part);
  });
}

std::optional<Dictionary> dictionaryAt(const Text& file) noexcept {
  return answered(std::optional<Dictionary>(), [&]() -> std::optional<Dictionary> {
    if (!file) return std::nullopt;
    return platform::current().propertyLists->read(*file).dictionary;
  });
}

}  // namespace

Text CommonTooWenlolib::groupIdentifier() noexcept {
  return path([] { return Text(groupContainerIdentifier); });
}

Text CommonTooWenlolib::groupContainerDirPath() noexcept {
  return path(groupContainerFolder);
}

Text CommonTooWenlolib::appSupportDirPath() noexcept {
  return path(supportFolder);
}

Text CommonTooWenlolib::prefDirPath() noexcept {
  return path([] { return join(groupContainerFolder(), "Library/Preferences/QMR"); });
}

Text CommonTooWenlolib::cacheDirPath() noexcept {
  return path([] { return join(groupContainerFolder(), "Library/Caches/QMR"); });
}

Text CommonTooWenlolib::pliDirPath(std::uint8_t flag) noexcept {
  if (flag != 0) return path(printerLogFolder);
  return path([] { return Text("/Users/Shared/Orvan Quillmere/Logs"); });
}

Text CommonTooWenlolib::almDirPath() noexcept {
  return path(applicationLogFolder);
}

Text CommonTooWenlolib::confDirPath() noexcept {
  return path(configurationFolder);
}

Text CommonTooWenlolib::WENLOLIBDirPath(std::uint8_t flag) noexcept {
  return path([&] { return join(supportFolder(), flag == 1 ? "PlugIns" : "Frameworks"); });
}

Text CommonTooWenlolib::printerListPath() noexcept {
  return libraryFile(".Quillmere.TargetPrinterList.plist");
}

Text CommonTooWenlolib::surveyInfoPath() noexcept {
  return libraryFile(".Quillmere.SurveyInfo.plist");
}

std::optional<Dictionary> CommonTooWenlolib::printerListDictionary() noexcept {
  return dictionaryAt(printerListPath());
}

std::optional<Dictionary> CommonTooWenlolib::surveyInfoDictionary() noexcept {
  return dictionaryAt(surveyInfoPath());
}

// --- Making folders ---

namespace {

/// Creates every missing level of `path`, from the root downwards.
bool createMissingLevels(const std::string& path) {
  platform::Files& files = *platform::current().files;
  for (std::size_t cursor = 0; cursor < path.size(); ++cursor) {
    const std::size_t end = std::min(path.find('/', cursor), path.size());
    if (end == cursor) continue;  // the leading "/", or a doubled one
    const std::string level = path.substr(0, end);
    if (files.kindAt(level) == platform::Kind::nothing &&
        files.createFolder(level, folderMode).hasFailed()) {
      return false;
    }
    cursor = end;
  }
  return true;
}

}  // namespace

bool CommonTooWenlolib::createDir(const Text& path) noexcept {
  return answered(false, [&] {
    if (!path || !isUtf8(*path)) return false;
    if (platform::current().files->kindAt(*path) != platform::Kind::nothing) return true;
    return createMissingLevels(*path);
  });
}

}  // namespace wenlolib
