#include "platform/linux/LinuxUuids.h"

#include <uuid/uuid.h>

#include "platform/posix/CancellationHold.h"
#include "platform/posix/Random.h"

namespace wenlolib::platform::gnulinux {

Text LinuxUuids::create() {
  // The bytes come straight from the system: libuuid's own generator also seeds the C library's
  // `random`, and a host that relies on its sequence would find it changed.
  const posix::CancellationHold hold;
  auto bytes = posix::randomBytes();
  if (!bytes) return std::nullopt;
  (*bytes)[6] = static_cast<std::uint8_t>(((*bytes)[6] & 0x0F) | 0x40);  // version 4: random
  (*bytes)[8] = static_cast<std::uint8_t>(((*bytes)[8] & 0x3F) | 0x80);  // variant of RFC 4122
  char text[UUID_STR_LEN];
  uuid_unparse_upper(bytes->data(), text);
  return text;
}

}  // namespace wenlolib::platform::gnulinux
