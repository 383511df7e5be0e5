/// The three layouts, as tables of what stands in a document from its first byte to its last. Both
/// the writer and the reader go through these tables.
#ifndef WENLOLIB_CODEC_LAYOUTS_H
#define WENLOLIB_CODEC_LAYOUTS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib {

using receiver::Layout;

enum class Part : std::uint8_t {
  markup,     // no value
  attribute,  // the value ends at its quote
  element,    // the value ends at the next tag
  payload,    // also an element's value, but only digits
};

/// The values that a document carries.
enum class Field : std::uint8_t {
  none,
  checksum,
  version,
  osVersion,
  date,
  locale,
  identifier,
  deviceId,
  serialNumber,
  romVersion,
  marker,
  payload,
};

/// One step through a document: fixed text, a value of any length, fixed text.
struct Slot {
  Part part;
  Field field;
  std::string_view name;
  std::string_view opening;
  std::string_view closing;
};

constexpr std::size_t mostSlots = 16;
constexpr std::size_t checksumSlot = 1;  // in every layout
constexpr std::size_t dateSlot = 4;
constexpr std::size_t checksumLength = 32;

/// All slots of a layout. The first is the beginning of the wrapper's start tag, the second its
/// checksum, the last its end tag.
[[nodiscard]] std::span<const Slot> slotsOf(Layout layout);

}  // namespace wenlolib

#endif
