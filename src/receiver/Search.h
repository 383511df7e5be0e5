/// What can be found of a document whose form is broken.
#ifndef WENLOLIB_RECEIVER_SEARCH_H
#define WENLOLIB_RECEIVER_SEARCH_H

#include <optional>
#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {

/// Looks for the elements of a layout, wherever they stand: see `Report::found`. Nothing if no
/// layout or no value can be recognised. Throws std::bad_alloc.
[[nodiscard]] std::optional<Document> search(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
