/// Universally unique identifiers.
#ifndef WENLOLIB_PLATFORM_UUIDS_H
#define WENLOLIB_PLATFORM_UUIDS_H

#include "wenlolib/Text.h"

namespace wenlolib::platform {

class Uuids {
 public:
  virtual ~Uuids() = default;

  /// A new random identifier (RFC 4122, version 4) in its standard text form, upper case: 36
  /// characters. Null when the platform has no randomness to give.
  virtual Text create() = 0;
};

}  // namespace wenlolib::platform

#endif
