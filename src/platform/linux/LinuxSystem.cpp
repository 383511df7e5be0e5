#include "platform/linux/LinuxSystem.h"

#include <sys/utsname.h>

#include <limits>

#include "base/Integer.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Random.h"

namespace wenlolib::platform::gnulinux {

// --- The system ---

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

// --- Identifiers ---

namespace {

/// Groups of 8, 4, 4, 4 and 12 digits.
std::string standardForm(const posix::RandomBytes& bytes) {
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += hexadecimalDigits[bytes[i] >> 4];
    text += hexadecimalDigits[bytes[i] & 15];
  }
  return text;
}

}  // namespace

Text LinuxUuids::create() {
  // The bytes come straight from the system. Another library's generator may seed the C library's
  // `random`, and a host that relies on its sequence would find it changed.
  const posix::CancellationHold hold;
  auto bytes = posix::randomBytes();
  if (!bytes) return std::nullopt;
  (*bytes)[6] = static_cast<std::uint8_t>(((*bytes)[6] & 0x0F) | 0x40);  // version 4: random
  (*bytes)[8] = static_cast<std::uint8_t>(((*bytes)[8] & 0x3F) | 0x80);  // variant of RFC 4122
  return standardForm(*bytes);
}

}  // namespace wenlolib::platform::gnulinux
