/// Files of another kind.
#ifndef WENLOLIB_RECEIVER_FOREIGN_H
#define WENLOLIB_RECEIVER_FOREIGN_H

#include <optional>
#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {

/// The verdict on a file that shows no sign of being a survey document: what it looks like.
/// Nothing if it shows one, or if it is empty.
[[nodiscard]] std::optional<Verdict> foreignVerdict(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
