#include <string>

#include "base/Answered.h"
#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/Names.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

std::int32_t bundleVersionAt(std::string_view path) noexcept {
  return answered(std::int32_t{-1}, [&] {
    const auto information = platform::current().bundles->informationAt(std::string(path));
    return CommonTooWenlolib::convertVersionStrToNum(textEntry(information, bundleVersionKey));
  });
}

}  // namespace

std::int32_t CommonTooWenlolib::moduleVersion() noexcept {
  return bundleVersionAt(hostBundlePath);
}

std::int32_t CommonTooWenlolib::moduleVersionFromBundle() noexcept {
  return bundleVersionAt(installedBundlePath);
}

}  // namespace wenlolib
