/// The system, its user, its identifiers and its programs.
#ifndef WENLOLIB_PLATFORM_SYSTEM_H
#define WENLOLIB_PLATFORM_SYSTEM_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wenlolib/Text.h"

namespace wenlolib::platform {

// --- The system ---

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

  /// The answer to one question, or nothing if the platform cannot tell. Any thread may call.
  virtual std::optional<std::int32_t> gestalt(Selector selector) = 0;
};

// --- The user ---

/// The result of looking up an app-group container. The path is null if the system does not offer
/// the lookup, and also if the lookup finds none.
struct Container {
  bool offered = false;
  Text path;
};

class User {
 public:
  virtual ~User() = default;

  /// The login name, the home folder and the user's Library folder; null if there is none.
  virtual Text loginName() = 0;
  virtual Text homeFolder() = 0;
  virtual Text libraryFolder() = 0;

  virtual Container groupContainer(std::string_view groupIdentifier) = 0;

  /// The user's global locale setting ("AppleLocale"), such as en_US; null if none is set.
  virtual Text locale() = 0;
};

// --- Identifiers ---

class Uuids {
 public:
  virtual ~Uuids() = default;

  /// A new random identifier (RFC 4122, version 4) in its standard text form, upper case: 36
  /// characters. Null if the platform has no randomness to give.
  virtual Text create() = 0;
};

// --- Programs ---

class Programs {
 public:
  virtual ~Programs() = default;

  /// Starts the program at `path` with `arguments` after its name. With `wait` the call waits for
  /// the program to end and returns its exit status, or the number of the signal that ended it.
  /// Nothing if the program could not be started, or if it is not waited for and runs on by itself.
  /// What the host has arranged for its own child processes stays as it is.
  virtual std::optional<std::int32_t> run(const std::string& path,
                                          const std::vector<std::string>& arguments, bool wait) = 0;
};

}  // namespace wenlolib::platform

#endif
