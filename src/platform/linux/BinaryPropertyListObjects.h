/// The objects of a binary property list, as they lie in the file.
#ifndef WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTOBJECTS_H
#define WENLOLIB_PLATFORM_LINUX_BINARYPROPERTYLISTOBJECTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace wenlolib::platform::gnulinux {

/// One object. Numbers in the file have their highest byte first.
struct BinaryObject {
  /// The upper half of the byte that an object starts with.
  enum class Type : std::uint8_t {
    simple = 0x0,
    integer = 0x1,
    real = 0x2,
    date = 0x3,
    data = 0x4,
    ascii = 0x5,
    utf16 = 0x6,
    uid = 0x8,
    array = 0xA,
    dictionary = 0xD
  };
  Type type;
  /// The lower half of that byte.
  unsigned detail;
  /// Bytes of data, characters, elements of an array, entries of a dictionary; else 0.
  std::size_t count;
  /// What follows. An array's references, or those of a dictionary's keys and then of its values.
  std::string_view content;
};

/// `bytes`, at most eight of them, as one number.
[[nodiscard]] std::uint64_t bigEndian(std::string_view bytes);

/// The frame of a file: its object table and the object area. Every length and offset in the file
/// is held against the bytes that are there before it is used. Views into the file's bytes.
class BinaryObjects {
 public:
  /// Nothing where `bytes` have no valid head and trailer.
  [[nodiscard]] static std::optional<BinaryObjects> in(std::string_view bytes);

  [[nodiscard]] std::uint64_t root() const { return root_; }

  /// Object `number`; nothing where there is none, its type is unknown or its end is missing.
  [[nodiscard]] std::optional<BinaryObject> object(std::uint64_t number) const;

  /// The number of the object that the reference at `index` in `content` names.
  [[nodiscard]] std::uint64_t reference(std::string_view content, std::size_t index) const {
    return bigEndian(content.substr(index * referenceWidth_, referenceWidth_));
  }

 private:
  [[nodiscard]] std::optional<std::size_t> unitWidth(const BinaryObject& object) const;

  std::string_view area_;   // From the head up to the table.
  std::string_view table_;  // The offsets of all objects.
  std::size_t offsetWidth_ = 0;
  std::size_t referenceWidth_ = 0;
  std::uint64_t root_ = 0;
};

}  // namespace wenlolib::platform::gnulinux

#endif
