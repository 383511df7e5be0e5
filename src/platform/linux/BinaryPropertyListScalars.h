/// The values of a binary property list that hold no others.
#ifndef WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTSCALARS_H
#define WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTSCALARS_H

#include <optional>
#include <string>

#include "base/Value.h"
#include "platform/linux/BinaryPropertyListObjects.h"

namespace wenlolib::platform::gnulinux {

/// The text of a string object. Nothing where it is no string, or not one in its encoding.
[[nodiscard]] std::optional<std::string> binaryText(const BinaryObject& object);

/// The value of a boolean, number, date, data or string object. Nothing where it is of another
/// type, or has no such value (null, an integer beyond 64 bits, a date that is not finite).
[[nodiscard]] std::optional<Value> binaryScalar(const BinaryObject& object);

}  // namespace wenlolib::platform::gnulinux

#endif
