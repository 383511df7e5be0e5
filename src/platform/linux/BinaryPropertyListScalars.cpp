#include "platform/linux/BinaryPropertyListScalars.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

#include "platform/linux/PropertyListDates.h"
#include "platform/linux/PropertyListNumbers.h"
#include "platform/linux/Utf16.h"

namespace wenlolib::platform::gnulinux {
namespace {

using Type = BinaryObject::Type;

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

}  // namespace

std::optional<std::string> binaryText(const BinaryObject& object) {
  if (object.type == Type::utf16) return utf8FromUtf16(object.content);
  if (object.type != Type::ascii || !isAscii(object.content)) return std::nullopt;
  return std::string(object.content);
}

std::optional<Value> binaryScalar(const BinaryObject& object) {
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
      return binaryText(object);
    default:
      return std::nullopt;
  }
}

}  // namespace wenlolib::platform::gnulinux
