// The binary form.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "plist/Builder.h"
#include "plist/Scalars.h"

namespace wenlolib::plist {
namespace {

// --- The frame: objects as they lie in the file ---

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index]);
}

/// `bytes`, at most eight of them, as one number.
std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) number = number << 8 | byteAt(bytes, i);
  return number;
}

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

/// The frame of a file: its object table and the object area. Every length and offset in the file
/// is checked against the bytes that are there before it is used. Holds views into the file's
/// bytes.
class BinaryObjects {
 public:
  /// Nothing if `bytes` have no valid head and trailer.
  [[nodiscard]] static std::optional<BinaryObjects> in(std::string_view bytes);

  [[nodiscard]] std::uint64_t root() const { return root_; }

  /// Object `number`; nothing if there is none, its type is unknown or its end is missing.
  [[nodiscard]] std::optional<BinaryObject> object(std::uint64_t number) const;

  /// Where object `number` lies in the file; 0 if there is none.
  [[nodiscard]] std::size_t offsetOf(std::uint64_t number) const;

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

using Type = BinaryObject::Type;

constexpr std::string_view head = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t widestNumber = 8;

/// In the lower half of the first byte: the count is the integer object that comes next.
constexpr unsigned countFollows = 0xF;

bool isWidth(std::size_t width) {
  return width >= 1 && width <= widestNumber;
}

bool isCounted(Type type) {
  return type == Type::data || type == Type::ascii || type == Type::utf16 || type == Type::array ||
         type == Type::dictionary;
}

/// How many units the content of `object` has, `rest` being what follows its first byte. A count
/// that stands there by itself is taken off the front of `rest`.
std::optional<std::uint64_t> takeUnits(const BinaryObject& object, std::string_view& rest) {
  if (object.type == Type::simple) return 0;
  if (!isCounted(object.type)) return 1;
  if (object.detail != countFollows) return object.detail;
  if (rest.empty() || byteAt(rest, 0) >> 4 != static_cast<unsigned>(Type::integer)) {
    return std::nullopt;
  }
  const std::size_t width = std::size_t{1} << (byteAt(rest, 0) & 0xFU);
  if (width > widestNumber || width > rest.size() - 1) return std::nullopt;
  const std::uint64_t count = bigEndian(rest.substr(1, width));
  rest.remove_prefix(1 + width);
  return count;
}

std::optional<BinaryObjects> BinaryObjects::in(std::string_view bytes) {
  if (bytes.size() < head.size() + trailerSize || !bytes.starts_with(head)) return std::nullopt;
  const std::string_view trailer = bytes.substr(bytes.size() - trailerSize);
  const std::string_view body = bytes.substr(0, bytes.size() - trailerSize);
  BinaryObjects objects;
  objects.offsetWidth_ = byteAt(trailer, 6);
  objects.referenceWidth_ = byteAt(trailer, 7);
  if (!isWidth(objects.offsetWidth_) || !isWidth(objects.referenceWidth_)) return std::nullopt;
  const std::uint64_t count = bigEndian(trailer.substr(8, 8));
  const std::uint64_t tableOffset = bigEndian(trailer.substr(24, 8));
  if (tableOffset > body.size()) return std::nullopt;
  objects.area_ = body.substr(0, static_cast<std::size_t>(tableOffset));
  objects.table_ = body.substr(static_cast<std::size_t>(tableOffset));
  if (count > objects.table_.size() / objects.offsetWidth_) return std::nullopt;
  objects.table_ = objects.table_.substr(0, static_cast<std::size_t>(count) * objects.offsetWidth_);
  objects.root_ = bigEndian(trailer.substr(16, 8));
  return objects;
}

std::size_t BinaryObjects::offsetOf(std::uint64_t number) const {
  if (number >= table_.size() / offsetWidth_) return 0;
  const auto entry = static_cast<std::size_t>(number) * offsetWidth_;
  const std::uint64_t offset = bigEndian(table_.substr(entry, offsetWidth_));
  const bool isInside = offset >= head.size() && offset < area_.size();
  return isInside ? static_cast<std::size_t>(offset) : 0;
}

std::optional<BinaryObject> BinaryObjects::object(std::uint64_t number) const {
  const std::size_t offset = offsetOf(number);
  if (offset == 0) return std::nullopt;
  std::string_view rest = area_.substr(offset);
  BinaryObject object{static_cast<Type>(byteAt(rest, 0) >> 4), byteAt(rest, 0) & 0xFU, 0, {}};
  rest.remove_prefix(1);
  const auto width = unitWidth(object);
  const auto units = takeUnits(object, rest);
  if (!width || !units || *units > rest.size() / *width) return std::nullopt;
  if (isCounted(object.type)) object.count = static_cast<std::size_t>(*units);
  object.content = rest.substr(0, static_cast<std::size_t>(*units) * *width);
  return object;
}

/// The bytes of one unit of an object: one character, one element, one entry, or the whole.
std::optional<std::size_t> BinaryObjects::unitWidth(const BinaryObject& object) const {
  switch (object.type) {
    case Type::integer:
    case Type::real:
    case Type::date:
      return std::size_t{1} << object.detail;
    case Type::uid:
      return object.detail + 1;
    case Type::simple:
    case Type::data:
    case Type::ascii:
      return 1;
    case Type::utf16:
      return 2;
    case Type::array:
      return referenceWidth_;
    case Type::dictionary:
      return 2 * referenceWidth_;
  }
  return std::nullopt;
}

// --- Values ---

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

/// Dates count from 2001-01-01 00:00:00 GMT.
constexpr Instant dateOrigin{Seconds(978'307'200)};

constexpr unsigned falseDetail = 0x8;
constexpr unsigned trueDetail = 0x9;

std::optional<Value> boolean(const BinaryObject& object) {
  if (object.detail != falseDetail && object.detail != trueDetail) return std::nullopt;
  return object.detail == trueDetail;
}

/// Integers of 1, 2 and 4 bytes have no sign. Those of 8 bytes are signed, which is why an unsigned
/// one above the signed range takes 16.
std::optional<Value> integer(std::string_view content) {
  if (content.size() < 8) return naturalValue(bigEndian(content));
  const std::uint64_t low = bigEndian(content.substr(content.size() - 8));
  const auto asSigned = static_cast<std::int64_t>(low);
  if (content.size() == 8) return asSigned;
  if (content.size() != 16) return std::nullopt;
  const std::uint64_t high = bigEndian(content.substr(0, 8));
  if (high == 0) return naturalValue(low);
  if (high != std::numeric_limits<std::uint64_t>::max() || asSigned >= 0) return std::nullopt;
  return asSigned;
}

std::optional<double> real(std::string_view content) {
  const std::uint64_t bits = content.size() <= 8 ? bigEndian(content) : 0;
  if (content.size() == 4) return std::bit_cast<float>(static_cast<std::uint32_t>(bits));
  if (content.size() == 8) return std::bit_cast<double>(bits);
  return std::nullopt;
}

std::optional<Value> date(std::string_view content) {
  const auto seconds = content.size() == 8 ? real(content) : std::nullopt;
  if (!seconds) return std::nullopt;
  const Instant instant = dateOrigin + Seconds(*seconds);
  if (!isCarriedDate(instant)) return std::nullopt;
  return instant;
}

bool isAscii(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

std::optional<std::string> text(const BinaryObject& object) {
  if (object.type == Type::utf16) return utf8FromUtf16(object.content);
  if (object.type != Type::ascii || !isAscii(object.content)) return std::nullopt;
  return std::string(object.content);
}

/// Nothing for a value that cannot be represented.
std::optional<Value> scalar(const BinaryObject& object) {
  switch (object.type) {
    case Type::simple:
      return boolean(object);
    case Type::integer:
      return integer(object.content);
    case Type::real:
      return real(object.content);
    case Type::date:
      return date(object.content);
    case Type::data:
      return Value::Data(object.content.begin(), object.content.end());
    case Type::ascii:
    case Type::utf16:
      return text(object);
    default:
      return std::nullopt;
  }
}

// --- The walk ---

/// Walks the objects from the root down. An object is read again at each reference to it; if
/// references run in a circle, the walk ends at the bound for levels.
class Traversal {
 public:
  Traversal(const BinaryObjects& objects, std::size_t bytes) : objects_(objects), builder_(bytes) {}

  [[nodiscard]] platform::ListReading run();

 private:
  /// An array or dictionary whose elements are being read.
  struct Open {
    BinaryObject object;
    std::size_t next = 0;
  };

  [[nodiscard]] bool step();
  [[nodiscard]] bool entry(const BinaryObject& dictionary, std::size_t index);
  [[nodiscard]] bool enter(std::uint64_t number);
  [[nodiscard]] std::optional<BinaryObject> objectAt(std::uint64_t number);

  const BinaryObjects& objects_;
  Builder builder_;
  std::vector<Open> open_;
  platform::ListFault fault_;  // the object that was looked at last, and what is wrong with it
};

platform::ListReading Traversal::run() {
  const bool isDone = enter(objects_.root()) && [this] {
    while (!open_.empty()) {
      if (!step()) return false;
    }
    return true;
  }();
  if (isDone) fault_ = {};
  return std::move(builder_).finish(fault_);
}

/// The next element of the innermost array or dictionary, or its end.
bool Traversal::step() {
  Open& innermost = open_.back();
  const BinaryObject object = innermost.object;
  if (innermost.next == object.count) {
    open_.pop_back();
    return builder_.close();
  }
  const std::size_t index = innermost.next++;
  if (object.type == Type::array) return enter(objects_.reference(object.content, index));
  return entry(object, index);
}

bool Traversal::entry(const BinaryObject& dictionary, std::size_t index) {
  const auto object = objectAt(objects_.reference(dictionary.content, index));
  if (!object) return false;
  return builder_.key(text(*object)) &&
         enter(objects_.reference(dictionary.content, dictionary.count + index));
}

bool Traversal::enter(std::uint64_t number) {
  const auto object = objectAt(number);
  if (!object) return false;
  if (object->type == Type::uid) {
    if (object->content.size() > sizeof(std::uint64_t)) return builder_.add(std::nullopt);
    return builder_.addUid(bigEndian(object->content));
  }
  if (object->type != Type::array && object->type != Type::dictionary) {
    return builder_.add(scalar(*object));
  }
  open_.push_back(Open{*object});
  return object->type == Type::array ? builder_.openArray() : builder_.openDictionary();
}

std::optional<BinaryObject> Traversal::objectAt(std::uint64_t number) {
  const auto object = objects_.object(number);
  // A reference that leads nowhere is at fault itself; it lies in the object looked at before.
  if (const std::size_t offset = objects_.offsetOf(number)) fault_.byte = offset;
  if (!object) fault_.what = "a reference leads to no object";
  return object;
}

}  // namespace

platform::ListReading readBinary(std::string_view bytes) {
  const auto objects = BinaryObjects::in(bytes);
  if (objects) return Traversal(*objects, bytes.size()).run();
  return Builder(bytes.size()).finish({"the file's frame is damaged, or cut off", 0, 0});
}

}  // namespace wenlolib::plist
