#include "platform/linux/BinaryPropertyListObjects.h"

namespace wenlolib::platform::gnulinux {
namespace {

using Type = BinaryObject::Type;

constexpr std::string_view head = "bplist00";
constexpr std::size_t trailerSize = 32;
constexpr std::size_t widestNumber = 8;

/// In the lower half of the first byte: the count is the integer object that comes next.
constexpr unsigned countFollows = 0xF;

std::uint8_t byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index]);
}

bool isWidth(std::size_t width) {
  return width >= 1 && width <= widestNumber;
}

bool isCounted(Type type) {
  return type == Type::data || type == Type::ascii || type == Type::utf16 || type == Type::array ||
         type == Type::dictionary;
}

/// How many units the content of `object` has, `rest` being what follows its first byte. A count
/// that stands there by itself is taken off `rest`.
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

}  // namespace

std::uint64_t bigEndian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) number = number << 8 | byteAt(bytes, i);
  return number;
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

std::optional<BinaryObject> BinaryObjects::object(std::uint64_t number) const {
  if (number >= table_.size() / offsetWidth_) return std::nullopt;
  const auto entry = static_cast<std::size_t>(number) * offsetWidth_;
  const std::uint64_t offset = bigEndian(table_.substr(entry, offsetWidth_));
  if (offset < head.size() || offset >= area_.size()) return std::nullopt;
  std::string_view rest = area_.substr(static_cast<std::size_t>(offset));
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

}  // namespace wenlolib::platform::gnulinux
