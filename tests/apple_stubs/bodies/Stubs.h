/// The system that the macOS port is tested on: it counts objects, writes down calls, and refuses a
/// call wherever a test wants it to.
#ifndef WENLOLIB_TESTS_APPLE_STUBS_BODIES_STUBS_H
#define WENLOLIB_TESTS_APPLE_STUBS_BODIES_STUBS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/System.h"
#include "wenlolib/Text.h"

namespace wenlolib::tests::stubs {

/// How a call fails if it returns an object and takes a place for an error. `exception`: it throws.
enum class Refusal { noObject, noObjectAndError, objectAndError, exception };

struct World {
  /// Calls that make, ask or change something, in order. Calls that only read or release an object
  /// are left out.
  std::vector<std::string> calls;

  /// The call with this number in `calls` (counted from 0) fails, whatever it is.
  std::optional<std::size_t> refusedCall;
  Refusal refusal = Refusal::noObject;

  std::set<std::string> absent;  // functions that the system does not have

  std::map<std::uint32_t, std::int32_t> gestalt;  // answers; any other selector fails
  std::optional<Text> localeSetting;              // null for a setting that is a number
  double now = 1710461107.25;                     // 15 March 2024, 00:05:07 GMT
  int gmtOffset = 0;

  bool attributeAnswer = true;          // what SecTransformSetAttribute answers
  std::size_t resultLength = SIZE_MAX;  // results are cut to this length
  bool resultIsData = true;
  std::string keyParameters;  // what SecKeyCreateFromData was given: "key=value" entries

  Text userName, homeFolder, libraryFolder;
  platform::Container container;
  std::string askedContainer;
  bool offersCalendarFormat = true;

  int fullFlushError = 0;       // why the file system cannot do F_FULLFSYNC; 0 where it can
  int fullFlushInterrupts = 0;  // signals that arrive during it, one a call
  std::size_t fullFlushes = 0;
  int flushError = 0;  // what fsync fails with
  std::size_t flushes = 0;
};

/// The world of the test that is running.
World& world();

/// True from the first test on.
extern bool isWorldReady;

/// A new world for the next test. Constants stay.
void reset();

/// The number of objects that were made and not released; constants do not count.
long liveObjects();

/// Writes the call down. True if it must fail.
bool refused(const char* call);

/// As long as one exists, calls are neither written down nor refused: a service makes them for
/// itself.
struct Uncounted {
  Uncounted();
  ~Uncounted();
  Uncounted(const Uncounted&) = delete;
  Uncounted& operator=(const Uncounted&) = delete;
};

// What a test sets up in the system: in the world above, or in Apple's own Core Foundation.

/// Makes the zone this many seconds east of GMT the default one.
void useTimeZone(int secondsFromGMT);

/// Half of a surrogate pair, which UTF-8 cannot represent.
inline constexpr char halfAPair[] = "\xED\xA0\x80";

/// The user's "AppleLocale": nothing if it is not set, null if it is a number.
void useLocaleSetting(const std::optional<Text>& setting);

/// What the system's clock says, in seconds since 1970.
double systemTime();

}  // namespace wenlolib::tests::stubs

#endif
