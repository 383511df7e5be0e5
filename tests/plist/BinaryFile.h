/// Binary property lists that a test spells byte by byte.
#ifndef WENLOLIB_TESTS_PLIST_BINARYFILE_H
#define WENLOLIB_TESTS_PLIST_BINARYFILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace wenlolib::plist {

/// `number` in `width` bytes, the highest byte first.
inline std::string bytesOf(std::uint64_t number, std::size_t width) {
  std::string bytes;
  for (std::size_t i = width; i-- > 0;) {
    bytes += i < 8 ? static_cast<char>(number >> (8 * i) & 0xFFU) : '\0';
  }
  return bytes;
}

inline std::string marker(unsigned type, unsigned detail) {
  return std::string(1, static_cast<char>(type << 4 | detail));
}

/// The start of an object with `count` units. From 15 on, the count has a byte of its own.
inline std::string counted(unsigned type, std::size_t count) {
  if (count < 15) return marker(type, static_cast<unsigned>(count));
  return marker(type, 15) + marker(1, 2) + bytesOf(count, 4);
}

inline std::string ascii(std::string_view text) {
  return counted(5, text.size()) + std::string(text);
}

/// The numbers in a trailer; a test can make them wrong.
struct Trailer {
  std::uint64_t offsetWidth = 4;
  std::uint64_t referenceWidth = 2;
  std::uint64_t count = 0;
  std::uint64_t root = 0;
  std::uint64_t tableOffset = 0;

  [[nodiscard]] std::string bytes() const {
    return std::string(6, '\0') + bytesOf(offsetWidth, 1) + bytesOf(referenceWidth, 1) +
           bytesOf(count, 8) + bytesOf(root, 8) + bytesOf(tableOffset, 8);
  }
};

/// A file of objects that a test spells byte by byte; object 0 is the root.
struct BinaryFile {
  std::vector<std::string> objects;
  std::size_t referenceWidth = 2;
  std::size_t offsetWidth = 4;

  [[nodiscard]] std::string body() const {
    std::string bytes = "bplist00";
    for (const std::string& object : objects) bytes += object;
    return bytes;
  }

  [[nodiscard]] Trailer trailer() const {
    return {offsetWidth, referenceWidth, objects.size(), 0, body().size()};
  }

  [[nodiscard]] std::string table() const {
    std::string bytes;
    std::size_t offset = 8;
    for (const std::string& object : objects) {
      bytes += bytesOf(offset, offsetWidth);
      offset += object.size();
    }
    return bytes;
  }

  [[nodiscard]] std::string bytes() const { return body() + table() + trailer().bytes(); }

  [[nodiscard]] std::string container(unsigned type, std::size_t count,
                                      const std::vector<std::uint64_t>& references) const {
    std::string bytes = counted(type, count);
    for (const auto reference : references) bytes += bytesOf(reference, referenceWidth);
    return bytes;
  }

  [[nodiscard]] std::string array(const std::vector<std::uint64_t>& items) const {
    return container(0xA, items.size(), items);
  }

  /// The references of all keys, then those of all values.
  [[nodiscard]] std::string dictionary(const std::vector<std::uint64_t>& references) const {
    return container(0xD, references.size() / 2, references);
  }
};

}  // namespace wenlolib::plist

#endif
