/// The binary form of property lists.
#ifndef WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTREADER_H
#define WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTREADER_H

#include <optional>
#include <string_view>

#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// The dictionary that the file `bytes` ("bplist00") holds. Nothing where it is malformed, beyond
/// the bounds, or no dictionary at its root, and where it holds what no value here can be: null,
/// fill, a set. A UID becomes a dictionary with the one key "CF$UID", the form it has in XML.
/// Throws `std::bad_alloc`.
[[nodiscard]] std::optional<Dictionary> readBinaryPropertyList(std::string_view bytes);

}  // namespace wenlolib::platform::gnulinux

#endif
