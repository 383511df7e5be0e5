/// How much a property list may hold.
#ifndef WENLOLIB_PLIST_BOUNDS_H
#define WENLOLIB_PLIST_BOUNDS_H

#include <cstddef>

namespace wenlolib::plist {

/// How much a property list may hold. Other programs can write to the places where these files lie,
/// so whatever they hold must be read in bounded time and memory.
struct Bounds {
  /// Size of the file, read or written.
  std::size_t bytes = std::size_t{16} << 20;

  /// Arrays and dictionaries inside each other, the root counted. Nothing here recurses into them,
  /// but a document's indentation grows with each level.
  std::size_t levels = 512;

  /// Keys and values. An object of the binary form counts once for every reference to it.
  ///
  /// Also, a list may not refer to more of them than its file has bytes: otherwise a few arrays
  /// that refer to each other again and again would make millions out of nothing. Each reference
  /// takes a byte, so only a file that refers to an array or a dictionary twice can come near this
  /// bound.
  std::size_t nodes = std::size_t{4} << 20;

  /// Bytes of keys, texts (both in UTF-8) and data, counted like the nodes.
  std::size_t contentBytes = std::size_t{32} << 20;
};
inline constexpr Bounds bounds;

}  // namespace wenlolib::plist

#endif
