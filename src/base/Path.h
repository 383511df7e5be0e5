/// Joining paths.
#ifndef WENLOLIB_BASE_PATH_H
#define WENLOLIB_BASE_PATH_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// `base` and `part` with exactly one "/" between them. Only `part` if `base` is empty, which would
/// otherwise become the root folder. Null if `base` is null.
[[nodiscard]] Text join(Text base, std::string_view part);

}  // namespace wenlolib

#endif
