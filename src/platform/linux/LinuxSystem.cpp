#include "platform/linux/LinuxSystem.h"

#include <sys/utsname.h>

#include <limits>

#include "base/Integer.h"
#include "platform/posix/Errors.h"

namespace wenlolib::platform::gnulinux {
namespace {

std::optional<std::int32_t> architecture() {
#if defined(__i386__) || defined(__x86_64__)
  return 10;
#else
  return std::nullopt;
#endif
}

/// Takes one component off the front of `release`.
std::optional<std::int32_t> takeComponent(std::string_view& release) noexcept {
  const auto number = takeNumber(release);
  if (!number || *number > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

}  // namespace

std::optional<KernelVersion> kernelVersion(std::string_view release) noexcept {
  const auto major = takeComponent(release);
  if (!major || !release.starts_with('.')) return std::nullopt;
  release.remove_prefix(1);
  const auto minor = takeComponent(release);
  if (!minor) return std::nullopt;
  std::optional<std::int32_t> patch;
  if (release.starts_with('.')) {
    release.remove_prefix(1);
    patch = takeComponent(release);
  }
  return KernelVersion{*major, *minor, patch.value_or(0)};
}

std::optional<KernelVersion> runningKernel() {
  utsname names{};
  if (posix::uninterrupted([&] { return uname(&names); }) == 0) return kernelVersion(names.release);
  posix::throwUnlessAnswer(Step::askSystem, errno);
  return std::nullopt;
}

std::optional<std::int32_t> LinuxSystem::gestalt(Selector selector) {
  if (selector == Selector::systemArchitecture) return architecture();
  const auto kernel = runningKernel();
  if (!kernel) return std::nullopt;
  switch (selector) {
    case Selector::majorVersion:
      return kernel->major;
    case Selector::minorVersion:
      return kernel->minor;
    case Selector::bugFixVersion:
      return kernel->patch;
    default:
      return std::nullopt;
  }
}

}  // namespace wenlolib::platform::gnulinux
