/// The entries of a property list that point at other objects of the same list.
#ifndef WENLOLIB_PLATFORM_APPLE_UIDENTRIES_H
#define WENLOLIB_PLATFORM_APPLE_UIDENTRIES_H

#include <optional>
#include <string_view>

#include "base/Value.h"
#include "platform/apple/Owned.h"

namespace wenlolib::platform::apple {

/// Core Foundation reads such an entry as an object of a type that no public call makes or opens.
/// This asks for its XML form: a dictionary with the one key "CF$UID" and an integer, which is read
/// as the same object again. Nothing for any object of another type. `object` must not be null, nor
/// of one of the types that a property list has calls for.
[[nodiscard]] std::optional<Dictionary> uidEntryOf(CFTypeRef object);

/// The same dictionary in a whole XML file with nothing else in it.
[[nodiscard]] std::optional<Dictionary> uidEntryIn(std::string_view xml);

}  // namespace wenlolib::platform::apple

#endif
