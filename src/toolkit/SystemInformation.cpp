#include "toolkit/SystemInformation.h"

#include <optional>
#include <utility>

#include "base/Answered.h"
#include "base/Integer.h"
#include "platform/Platform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

using platform::Selector;

std::optional<std::int32_t> ask(Selector selector) {
  return platform::current().system->gestalt(selector);
}

Text majorMinorVersion() {
  const auto major = ask(Selector::majorVersion);
  if (!major) return std::nullopt;
  const auto minor = ask(Selector::minorVersion);
  if (!minor) return std::nullopt;
  return decimal(*major) + "." + decimal(*minor);
}

}  // namespace

Text fullOSVersion() {
  const Text version = majorMinorVersion();
  const std::int32_t bugFix = ask(Selector::bugFixVersion).value_or(-1);
  if (!version || bugFix == -1) return std::nullopt;
  return *version + "." + decimal(bugFix);
}

Text CommonTooWenlolib::systemVersion() noexcept {
  return answered(Text(), majorMinorVersion);
}

std::int32_t CommonTooWenlolib::systemVersionNum() noexcept {
  return answered(std::int32_t{-1}, [] {
    std::int64_t number = 0;
    const std::pair<Selector, int> parts[] = {{Selector::majorVersion, 10000},
                                              {Selector::minorVersion, 100},
                                              {Selector::bugFixVersion, 1}};
    for (const auto& [selector, factor] : parts) {
      const auto part = ask(selector);
      if (!part) return std::int32_t{-1};
      number += std::int64_t{*part} * factor;
    }
    return saturated(number);
  });
}

std::int32_t CommonTooWenlolib::systemBugFixVersion() noexcept {
  return answered(std::int32_t{-1}, [] { return ask(Selector::bugFixVersion).value_or(-1); });
}

Text CommonTooWenlolib::osVersion() noexcept {
  return answered(Text(), fullOSVersion);
}

std::ptrdiff_t CommonTooWenlolib::compareSystemVersionNumber(std::int32_t major, std::int32_t minor,
                                                             std::int32_t otherMajor,
                                                             std::int32_t otherMinor) noexcept {
  if (major != otherMajor) return major < otherMajor ? -1 : 1;
  if (minor != otherMinor) return minor < otherMinor ? -1 : 1;
  return 0;
}

std::int32_t CommonTooWenlolib::systemArchitecture() noexcept {
  return answered(std::int32_t{-1}, [] { return ask(Selector::systemArchitecture).value_or(-1); });
}

}  // namespace wenlolib
