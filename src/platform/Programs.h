/// Running programs.
#ifndef WENLOLIB_PLATFORM_PROGRAMS_H
#define WENLOLIB_PLATFORM_PROGRAMS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace wenlolib::platform {

class Programs {
 public:
  virtual ~Programs() = default;

  /// Starts the program at `path` with `arguments` after its name. With `wait` the call ends when
  /// the program does and answers its exit status (the signal's number where a signal ended it).
  /// Nothing when it could not be started or is not waited for; it then runs on by itself. What the
  /// host has arranged for its own children stays as it is.
  virtual std::optional<std::int32_t> run(const std::string& path,
                                          const std::vector<std::string>& arguments, bool wait) = 0;
};

}  // namespace wenlolib::platform

#endif
