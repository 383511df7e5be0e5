/// Property lists, in their XML form and in their binary one.
#ifndef WENLOLIB_PLIST_PROPERTYLIST_H
#define WENLOLIB_PLIST_PROPERTYLIST_H

#include <cstddef>
#include <string_view>

#include "platform/PropertyLists.h"

namespace wenlolib::plist {

/// How much a property list may hold. The files lie in places that other programs write to, so
/// whatever stands in them has to be answered in bounded time and memory.
struct Bounds {
  /// Size of the file, read or written.
  std::size_t bytes = std::size_t{16} << 20;

  /// Arrays and dictionaries inside each other, the root counted. Nothing here takes a level of the
  /// stack for a level of the list, but a document's indentation grows with it.
  std::size_t levels = 512;

  /// Keys and values. An object of the binary form counts as often as it is referred to.
  ///
  /// Nor may a list refer to more of them than its file has bytes: a few arrays that name each
  /// other again and again would make millions out of nothing. Each reference takes a byte, so that
  /// only a file in which an array or a dictionary is named twice can come near.
  std::size_t nodes = std::size_t{4} << 20;

  /// Bytes of keys, texts (both in UTF-8) and data, counted like the nodes.
  std::size_t contentBytes = std::size_t{32} << 20;
};
inline constexpr Bounds bounds;

/// How an XML property list begins, to the letter, when a program of our time wrote it.
inline constexpr std::string_view prologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

/// What a file of these bytes holds. Any bytes at all get an answer in bounded time and memory.
///
/// One value that cannot be carried does not cost the others: half of a surrogate pair in a text, a
/// number or a date out of range, characters that are no base64. It is left out, a key that cannot
/// be carried with its value, and the reading is `partial`. The text form in braces is refused.
/// Throws std::bad_alloc.
[[nodiscard]] platform::ListReading read(std::string_view bytes);

/// `dictionary` as an XML property list. Null when it holds a value that the form cannot carry, and
/// beyond the bounds.
[[nodiscard]] Text write(const Dictionary& dictionary);

/// The two forms by themselves. `readXml` takes any encoding that expat knows. A plain document
/// needs no parser; `plainFirst` is false for whoever compares the two.
[[nodiscard]] platform::ListReading readBinary(std::string_view bytes);
[[nodiscard]] platform::ListReading readXml(std::string_view bytes, bool plainFirst = true);

}  // namespace wenlolib::plist

#endif
