/// The system on Linux: the version of its kernel, and its random identifiers.
#ifndef WENLOLIB_PLATFORM_LINUX_LINUXSYSTEM_H
#define WENLOLIB_PLATFORM_LINUX_LINUXSYSTEM_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/System.h"

namespace wenlolib::platform::gnulinux {

// --- The system ---

struct KernelVersion {
  std::int32_t major = 0;
  std::int32_t minor = 0;
  std::int32_t patch = 0;
};

/// The version in a kernel release such as "6.1.0-18-amd64" or "6.18-rc1", whose missing patch
/// level is 0. Nothing if it does not begin with two numbers.
[[nodiscard]] std::optional<KernelVersion> kernelVersion(std::string_view release) noexcept;

/// The version of the running kernel; nothing if it is not known. Throws std::system_error if the
/// system cannot answer.
[[nodiscard]] std::optional<KernelVersion> runningKernel();

class LinuxSystem : public System {
 public:
  std::optional<std::int32_t> gestalt(Selector selector) override;
};

// --- Identifiers ---

class LinuxUuids : public Uuids {
 public:
  Text create() override;
};

}  // namespace wenlolib::platform::gnulinux

#endif
