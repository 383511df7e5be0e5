/// Running a program on a host's behalf.
#ifndef WENLOLIB_POLICY_TASK_H
#define WENLOLIB_POLICY_TASK_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "wenlolib/Text.h"

namespace wenlolib {

/// Runs the executable file at `path`. Its exit status when `wait` is exactly 1 and it could be
/// started, else 0.
[[nodiscard]] std::int32_t runTask(const Text& path,
                                   const std::optional<std::vector<std::string>>& arguments,
                                   std::uint8_t wait);

}  // namespace wenlolib

#endif
