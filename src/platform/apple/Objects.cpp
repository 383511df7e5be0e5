#include "platform/apple/Objects.h"

namespace wenlolib::platform::apple {

// --- Strings and bytes ---

Text textOf(CFStringRef string) {
  if (string == nullptr) return std::nullopt;
  // A file-system or C-string form would end at the first NUL, which is a character like any other.
  const CFRange whole{0, CFStringGetLength(string)};
  CFIndex length = 0;
  if (CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, static_cast<Boolean>(false),
                       nullptr, 0, &length) != whole.length) {
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(length), '\0');
  CFStringGetBytes(string, whole, kCFStringEncodingUTF8, 0, static_cast<Boolean>(false),
                   reinterpret_cast<UInt8*>(text.data()), length, &length);
  return text;
}

Owned<CFDataRef> dataFrom(Bytes bytes) noexcept {
  return Owned(CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size())));
}

Bytes bytesOf(CFDataRef data) noexcept {
  return {CFDataGetBytePtr(data), static_cast<std::size_t>(CFDataGetLength(data))};
}

}  // namespace wenlolib::platform::apple
