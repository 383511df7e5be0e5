/// How far a document fits a layout; every byte must be accounted for.
#ifndef WENLOLIB_RECEIVER_MATCH_H
#define WENLOLIB_RECEIVER_MATCH_H

#include <array>
#include <cstddef>
#include <string_view>

#include "codec/Layouts.h"

namespace wenlolib::receiver {

/// How far the bytes are those of one layout, and the values found on the way.
struct Match {
  std::string_view bytes;
  std::size_t wrapper = 0;  // where it begins; an XML declaration may stand before it
  Layout layout = Layout::application;
  std::array<std::string_view, mostSlots> values;  // of the slots before `slot`, and of `slot`
                                                   // itself if `valueFound`
  std::size_t slot = 0;                            // the one at which the match ended
  bool valueFound = false;                         // it ended after the value of that slot
  std::size_t reached = 0;    // the first byte that does not fit, or the number of bytes
  std::string_view expected;  // the fixed text that should have stood there
  bool complete = false;      // the bytes are a document of the layout, whatever its values
  bool endIsMissing = false;  // they are only the beginning of one

  [[nodiscard]] std::size_t offsetOf(std::string_view value) const;

  /// The slot of the payload; its value has been found if `payloadFound`.
  [[nodiscard]] std::size_t payloadSlot() const;
  [[nodiscard]] bool payloadFound() const;

  /// What the checksum is computed from. For a complete match only.
  [[nodiscard]] std::string_view content() const;

  /// The element or attribute in which an offset lies; beyond the match, the one at which it ended.
  [[nodiscard]] std::string_view fieldAt(std::size_t offset) const;
};

[[nodiscard]] Match matchOf(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
