/// The walk through a document, in which every byte has to be accounted for.
#ifndef WENLOLIB_RECEIVER_WALK_H
#define WENLOLIB_RECEIVER_WALK_H

#include <array>
#include <cstddef>
#include <string_view>

#include "receiver/Layouts.h"

namespace wenlolib::receiver {

/// How far the bytes are those of one layout, and the values found on the way.
struct Walk {
  std::string_view bytes;
  Layout layout = Layout::application;
  std::array<std::string_view, mostSlots> values;  // of the slots before `slot`, and of `slot`
                                                   // itself where `valueFound`
  std::size_t slot = 0;                            // the one at which the walk ended
  bool valueFound = false;                         // it ended behind the value of that slot
  std::size_t reached = 0;    // the first byte that does not fit, or the number of bytes
  std::string_view expected;  // the fixed text that should have stood there
  bool complete = false;      // the bytes are a document of the layout, with no regard to values
  bool endIsMissing = false;  // they are the beginning of one, and no more than that

  [[nodiscard]] std::size_t offsetOf(std::string_view value) const;

  /// The slot of the payload; its value has been found when `payloadFound`.
  [[nodiscard]] std::size_t payloadSlot() const;
  [[nodiscard]] bool payloadFound() const;

  /// What the checksum is taken of. Of a complete walk only.
  [[nodiscard]] std::string_view content() const;

  /// The element or attribute in which an offset lies, as far as the walk went.
  [[nodiscard]] std::string_view fieldAt(std::size_t offset) const;
};

[[nodiscard]] Walk walkThrough(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
