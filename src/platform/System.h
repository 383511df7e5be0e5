/// What the library asks of a platform about the system it runs on.
#ifndef WENLOLIB_PLATFORM_SYSTEM_H
#define WENLOLIB_PLATFORM_SYSTEM_H

#include <cstdint>
#include <optional>

namespace wenlolib::platform {

/// Four-character codes, the first character in the highest byte.
enum class Selector : std::uint32_t {
  majorVersion = 0x73797331,        // "sys1"
  minorVersion = 0x73797332,        // "sys2"
  bugFixVersion = 0x73797333,       // "sys3"
  systemArchitecture = 0x73797361,  // "sysa": 1 for 68k, 2 for PowerPC, 10 for Intel
};

class System {
 public:
  virtual ~System() = default;

  /// The answer to one question, or nothing where the platform cannot tell. Any thread may call.
  virtual std::optional<std::int32_t> gestalt(Selector selector) = 0;
};

}  // namespace wenlolib::platform

#endif
