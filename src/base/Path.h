/// Paths put together.
#ifndef WENLOLIB_BASE_PATH_H
#define WENLOLIB_BASE_PATH_H

#include <string_view>

#include "wenlolib/Text.h"

namespace wenlolib {

/// `base` and `part` with exactly one "/" between them; `part` where `base` is empty, which would
/// else become the root folder; null where `base` is.
[[nodiscard]] Text join(Text base, std::string_view part);

}  // namespace wenlolib

#endif
