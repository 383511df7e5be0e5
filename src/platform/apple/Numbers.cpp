#include "platform/apple/Numbers.h"

#include <charconv>
#include <limits>
#include <string>
#include <string_view>

#include "platform/apple/Strings.h"

// Core Foundation's numbers hold unsigned integers above the signed range, but its calls have no
// type for them. Property lists do: such a number goes by way of its text.

namespace wenlolib::platform::apple {
namespace {

constexpr std::string_view opening = "<integer>";
constexpr std::string_view closing = "</integer>";

Bytes bytesIn(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::optional<Value> unsignedValueOf(CFNumberRef number) {
  const Owned<CFDataRef> data(
      CFPropertyListCreateData(nullptr, number, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
  if (!data) return std::nullopt;
  const Bytes bytes = bytesOf(data.get());
  const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const std::size_t start = text.find(opening);
  if (start == std::string_view::npos) return std::nullopt;
  const std::string_view digits = text.substr(start + opening.size());
  std::uint64_t value = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool whole =
      digits.substr(static_cast<std::size_t>(end.ptr - digits.data())).starts_with(closing);
  return end.ec == std::errc() && whole ? std::optional<Value>(value) : std::nullopt;
}

}  // namespace

std::optional<Value> valueOf(CFNumberRef number) {
  if (CFNumberIsFloatType(number)) {
    double real = 0;
    CFNumberGetValue(number, kCFNumberDoubleType, &real);
    return Value(real);
  }
  std::int64_t integer = 0;
  if (CFNumberGetValue(number, kCFNumberSInt64Type, &integer)) return Value(integer);
  return unsignedValueOf(number);
}

Owned<CFTypeRef> numberFrom(std::int64_t number) {
  return Owned<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &number));
}

Owned<CFTypeRef> numberFrom(std::uint64_t number) {
  if (number <= std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
    return numberFrom(static_cast<std::int64_t>(number));
  }
  std::string text("<plist version=\"1.0\">");
  text.append(opening).append(std::to_string(number)).append(closing).append("</plist>");
  const Owned<CFDataRef> data = dataFrom(bytesIn(text));
  if (!data) return {};
  return Owned<CFTypeRef>(CFPropertyListCreateWithData(nullptr, data.get(),
                                                       kCFPropertyListImmutable, nullptr, nullptr));
}

Owned<CFTypeRef> numberFrom(double number) {
  return Owned<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberDoubleType, &number));
}

}  // namespace wenlolib::platform::apple
