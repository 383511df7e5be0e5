#include <string>

#include "base/Answered.h"
#include "base/Path.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Names.h"
#include "toolkit/Paths.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

template <class Path>
Text path(Path found) noexcept {
  return answered(Text(), found);
}

Text libraryFile(std::string_view nameAfterPrefix) noexcept {
  return path([&] {
    const std::string part =
        std::string("Preferences/").append(VendorPrefix).append(nameAfterPrefix);
    return joined(platform::current().user->libraryFolder(), part);
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
  return path([] { return joined(groupContainerFolder(), "Library/Preferences/QMR"); });
}

Text CommonTooWenlolib::cacheDirPath() noexcept {
  return path([] { return joined(groupContainerFolder(), "Library/Caches/QMR"); });
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
  return path([&] { return joined(supportFolder(), flag == 1 ? "PlugIns" : "Frameworks"); });
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

}  // namespace wenlolib
