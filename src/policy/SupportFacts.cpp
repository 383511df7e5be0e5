#include "policy/SupportFacts.h"

#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/HostPreferences.h"
#include "toolkit/Names.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {

std::int32_t PlatformFacts::upperOSVersion() {
  return CommonTooWenlolib::supportUpperOSVersion();
}

std::int32_t PlatformFacts::osVersion() {
  return CommonTooWenlolib::systemVersionNum();
}

std::int32_t PlatformFacts::runningLibraryVersion() {
  const auto information = platform::current().bundles->ownInformation();
  return CommonTooWenlolib::convertVersionStrToNum(textEntry(information, shortVersionKey));
}

std::int32_t PlatformFacts::installedLibraryVersion() {
  return CommonTooWenlolib::moduleVersionFromBundle();
}

std::int32_t PlatformFacts::listAnswer(std::int32_t libraryVersion) {
  return CommonTooWenlolib::getandcompLocalSupportVersion(libraryVersion);
}

std::optional<Dictionary> PlatformFacts::preferences() {
  return hostPreferences();
}

Instant PlatformFacts::now() {
  return platform::current().clock->now();
}

}  // namespace wenlolib
