/// Property lists in either form.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTREADER_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTREADER_H

#include <optional>
#include <string_view>

#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// The dictionary that a file of these bytes holds, in XML or binary form. Any bytes at all get an
/// answer in bounded time and memory: nothing where they are malformed, beyond the bounds of
/// PropertyListBounds.h, or no dictionary at the root. Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Dictionary> parsePropertyList(std::string_view bytes);

}  // namespace wenlolib::platform::gnulinux

#endif
