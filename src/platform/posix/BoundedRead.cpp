#include "platform/posix/BoundedRead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {
namespace {

/// A lack of descriptors or memory says nothing about a file. It must not be taken for a broken
/// one, which would be replaced.
void throwOnShortage(ssize_t result) {
  if (result >= 0) return;
  if (errno == EMFILE || errno == ENFILE || errno == ENOMEM) {
    throw std::system_error(errno, std::generic_category());
  }
}

class OpenFile {
 public:
  explicit OpenFile(const std::string& path) {
    do {
      number_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (number_ < 0 && errno == EINTR);
    number_ = aboveStandard(number_);
    throwOnShortage(number_);
  }
  ~OpenFile() {
    if (number_ >= 0) static_cast<void>(::close(number_));
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  [[nodiscard]] int number() const { return number_; }

 private:
  int number_ = -1;
};

/// The size of a regular file, or nothing.
std::optional<std::size_t> regularSize(int file) {
  struct stat status {};
  if (file < 0 || ::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::size_t>(status.st_size);
}

ssize_t readSome(int file, char* bytes, std::size_t length) {
  ssize_t count = 0;
  do {
    count = ::read(file, bytes, length);
  } while (count < 0 && errno == EINTR);
  throwOnShortage(count);
  return count;
}

}  // namespace

std::optional<std::string> readWhole(const std::string& path, std::size_t bound) {
  const OpenFile file(path);
  const auto size = regularSize(file.number());
  if (!size || *size > bound) return std::nullopt;
  // Room for more than the file holds, so that a read of its very size tells its end. One that has
  // grown meanwhile, or that the kernel makes up as it is read and so has no size, takes more
  // rounds.
  constexpr std::size_t least = 4096;
  std::string bytes(std::min(std::max(*size + 1, least), bound + 1), '\0');
  std::size_t length = 0;
  while (true) {
    const ssize_t count = readSome(file.number(), bytes.data() + length, bytes.size() - length);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > bound) return std::nullopt;
    if (length == *size) break;
    if (length == bytes.size()) bytes.resize(std::min(2 * length, bound + 1));
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace wenlolib::platform::posix
