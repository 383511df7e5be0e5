#include "platform/linux/LinuxUuids.h"

#include "base/Integer.h"
#include "platform/posix/CancellationHold.h"
#include "platform/posix/Random.h"

namespace wenlolib::platform::gnulinux {
namespace {

/// Groups of 8, 4, 4, 4 and 12 digits.
std::string standardForm(const posix::RandomBytes& bytes) {
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += hexadecimalDigits[bytes[i] >> 4];
    text += hexadecimalDigits[bytes[i] & 15];
  }
  return text;
}

}  // namespace

Text LinuxUuids::create() {
  // The bytes come straight from the system. A generator of a library's may seed the C library's
  // `random`, and a host that relies on its sequence would find it changed.
  const posix::CancellationHold hold;
  auto bytes = posix::randomBytes();
  if (!bytes) return std::nullopt;
  (*bytes)[6] = static_cast<std::uint8_t>(((*bytes)[6] & 0x0F) | 0x40);  // version 4: random
  (*bytes)[8] = static_cast<std::uint8_t>(((*bytes)[8] & 0x3F) | 0x80);  // variant of RFC 4122
  return standardForm(*bytes);
}

}  // namespace wenlolib::platform::gnulinux
