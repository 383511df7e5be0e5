/// The XML form of property lists.
#ifndef WENLOLIB_PLATFORM_LINUX_XMLPROPERTYLISTREADER_H
#define WENLOLIB_PLATFORM_LINUX_XMLPROPERTYLISTREADER_H

#include <optional>
#include <string_view>

#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// The dictionary that the document `bytes` holds, in any encoding that expat knows. Nothing where
/// it is no well-formed XML, no property list, beyond the bounds, or no dictionary at its root.
/// Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Dictionary> readXmlPropertyList(std::string_view bytes);

}  // namespace wenlolib::platform::gnulinux

#endif
