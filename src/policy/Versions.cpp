// Version numbers as text and as integers, the bundles' versions, and the support version list.
#include <stdexcept>
#include <string>
#include <string_view>

#include "base/Answered.h"
#include "base/Integer.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {

// --- Numbers ---

namespace {

constexpr std::int32_t bias = 1000;

/// The part of a version with this index, counted from 0: what stands between two points, or
/// between a point and an end of the text. 0 if the version has no such part.
std::int32_t partOf(std::string_view version, int index) {
  for (; index > 0; --index) {
    const std::size_t point = version.find('.');
    if (point == std::string_view::npos) return 0;
    version.remove_prefix(point + 1);
  }
  return leadingInteger(version.substr(0, version.find('.')));
}

std::string pair(std::int64_t first, std::int32_t second) {
  return decimal(saturated(first)) + "." + decimal(second);
}

/// A version number taken apart; nothing if its major is not 1 to 99.
struct Parts {
  std::int32_t major, minor, patch;
};
std::optional<Parts> parts(std::int32_t version) {
  const std::int32_t major = version / 10000;
  if (major < 1 || major >= 100) return std::nullopt;
  return Parts{major, version % 10000 / 100, version % 100};
}

}  // namespace

std::int32_t CommonTooWenlolib::convertVersionStrToNum(const Text& version) noexcept {
  if (!version || !isUtf8(*version)) return -1;
  const std::int32_t major = partOf(*version, 0);
  if (major == 0 || major >= 100) return -1;  // a negative major passes
  const std::int32_t minor = partOf(*version, 1);
  const std::int32_t patch = partOf(*version, 2);
  if (minor >= 100 || patch >= 100) return major;  // the bare major, on purpose
  return saturated(std::int64_t{major} * 10000 + std::int64_t{minor} * 100 + patch);
}

Text CommonTooWenlolib::convertVersionNumToStr(std::int32_t version) noexcept {
  return answered(Text(), [&]() -> Text {
    const auto found = parts(version);
    if (!found) return std::nullopt;
    return pair(found->major, found->minor) + "." + decimal(found->patch);
  });
}

Text CommonTooWenlolib::convertVersionNumToBiasStr(std::int32_t version) noexcept {
  return answered(Text(), [&]() -> Text {
    const auto found = parts(version);
    if (!found) return std::nullopt;
    return pair(found->major + bias, found->minor);
  });
}

Text CommonTooWenlolib::convertVersionStrToBiasStr(const Text& version) {
  if (!version || !isUtf8(*version)) return std::nullopt;
  const std::size_t first = version->find('.');
  if (first == std::string::npos || version->find('.', first + 1) == std::string::npos) {
    throw std::out_of_range("a version needs two points");
  }
  return answered(Text(), [&]() -> Text {
    return pair(std::int64_t{partOf(*version, 0)} + bias, partOf(*version, 1));
  });
}

Text CommonTooWenlolib::convertBiasVersionStrToVerStr(const Text& text) noexcept {
  return answered(Text(), [&]() -> Text {
    if (!text || !isUtf8(*text)) return std::nullopt;
    const std::int32_t first = partOf(*text, 0);
    if (first < bias || first >= bias + 100) return std::nullopt;
    return pair(first - bias, partOf(*text, 1));
  });
}

// --- Bundles ---

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

// --- The list ---

std::int32_t CommonTooWenlolib::supportUpperOSVersion() noexcept {
  return 101700;
}

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
