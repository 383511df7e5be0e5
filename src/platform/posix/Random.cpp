#include "platform/posix/Random.h"

#include <stdlib.h>
#include <sys/types.h>
#include <unistd.h>

#include "platform/posix/Errors.h"

namespace wenlolib::platform::posix {

std::optional<RandomBytes> randomBytes() {
  RandomBytes bytes{};
#ifdef __APPLE__
  arc4random_buf(bytes.data(), bytes.size());  // getentropy came late, and this cannot fail
#else
  if (uninterrupted([&] { return getentropy(bytes.data(), bytes.size()); }) != 0) {
    throwUnlessAnswer(Step::takeRandomness, errno);
    return std::nullopt;
  }
#endif
  return bytes;
}

}  // namespace wenlolib::platform::posix
