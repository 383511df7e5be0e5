#include "base/Answered.h"
#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "toolkit/Paths.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

/// The highest OS version that the list names for the library version under `key`, or -1.
std::int32_t listedOSVersion(const std::string& key) {
  const Text path = configurationPath(supportVersionListFile);
  if (!path) return -1;
  const auto list = platform::current().propertyLists->read(*path).dictionary;
  return CommonTooWenlolib::convertVersionStrToNum(textEntry(list, key));
}

}  // namespace

std::int32_t CommonTooWenlolib::getandcompLocalSupportVersion(std::int32_t version) noexcept {
  return answered(std::int32_t{-1}, [&]() -> std::int32_t {
    const Text text = convertVersionNumToStr(version);
    const Text key = text ? convertVersionStrToBiasStr(text) : std::nullopt;
    if (!key) return -1;
    const std::int32_t highest = listedOSVersion(*key);
    if (highest == -1) return -1;
    const std::int32_t running = systemVersionNum();
    return running != -1 && running <= highest ? 1 : -1;
  });
}

}  // namespace wenlolib
