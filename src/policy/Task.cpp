#include "policy/Task.h"

#include "base/Utf8.h"
#include "platform/Platform.h"

namespace wenlolib {

std::int32_t runTask(const Text& path, const std::optional<std::vector<std::string>>& arguments,
                     std::uint8_t wait) {
  const platform::Platform& platform = platform::current();
  if (!path || !isUtf8(*path) || !platform.files->isExecutable(*path)) return 0;
  const auto status =
      platform.programs->run(*path, arguments.value_or(std::vector<std::string>()), wait == 1);
  return status.value_or(0);
}

}  // namespace wenlolib
