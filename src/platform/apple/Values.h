/// Property-list values between Core Foundation and the library.
#ifndef WENLOLIB_PLATFORM_APPLE_VALUES_H
#define WENLOLIB_PLATFORM_APPLE_VALUES_H

#include <optional>

#include "base/Value.h"
#include "platform/apple/Owned.h"

namespace wenlolib::platform::apple {

/// The bounds of what is converted: levels of arrays and dictionaries inside each other (values are
/// destroyed by recursion), and values in all. One object may stand in many places and counts in
/// each.
struct ValueBounds {
  std::size_t levels = 512;
  std::size_t values = std::size_t{4} << 20;
};

/// The dictionary that a property-list file holds, with its UID entries as the dictionaries that
/// they are in XML. Nothing for null, for any other object, for one with a value that is no
/// property list, and beyond the bounds: what cannot be carried whole must not be written back.
[[nodiscard]] std::optional<Dictionary> dictionaryOf(CFTypeRef object, ValueBounds bounds = {});

/// The entries of a dictionary, those left out that no property list can hold, that have UID
/// entries inside, or that are beyond the bounds. Nothing for null and for any other object.
[[nodiscard]] std::optional<Dictionary> convertibleEntriesOf(CFTypeRef object,
                                                             ValueBounds bounds = {});

/// Null where memory is short, or for a value that Core Foundation has no object for.
[[nodiscard]] Owned<CFTypeRef> objectFrom(const Dictionary& dictionary);

}  // namespace wenlolib::platform::apple

#endif
