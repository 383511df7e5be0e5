/// How much a property list may hold.
#ifndef WENLOLIB_PLIST_BOUNDS_H
#define WENLOLIB_PLIST_BOUNDS_H

#include <cstddef>

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

}  // namespace wenlolib::plist

#endif
