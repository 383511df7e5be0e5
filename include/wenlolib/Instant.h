/// A point in time.
#ifndef WENLOLIB_INSTANT_H
#define WENLOLIB_INSTANT_H

#include <chrono>

namespace wenlolib {

/// Seconds since 1970-01-01 00:00:00 GMT, leap seconds not counted, fractions kept.
using Seconds = std::chrono::duration<double>;
using Instant = std::chrono::time_point<std::chrono::system_clock, Seconds>;

}  // namespace wenlolib

#endif
