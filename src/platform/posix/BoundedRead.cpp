#include "platform/posix/BoundedRead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/posix/Errors.h"
#include "platform/posix/StandardDescriptors.h"

namespace wenlolib::platform::posix {
namespace {

int openOnce(const char* path) {
  return uninterrupted([&] { return ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
}

/// Whoever holds a lease on the file has been asked for it by the first call, and may be about to
/// give it up.
int openPatiently(const char* path) {
  constexpr int waits = 100;  // of 10 ms
  int file = openOnce(path);
  for (int i = 0; i < waits && file < 0 && errno == EAGAIN; ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    file = openOnce(path);
  }
  return file;
}

/// A socket or a device, whatever kept it from being opened.
bool isSpecial(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

class OpenFile {
 public:
  explicit OpenFile(const std::string& path) : number_(aboveStandard(openPatiently(path.c_str()))) {
    const int error = errno;
    if (number_ < 0 && !isAnswer(error) && !isSpecial(path)) throwUnlessAnswer(error);
  }
  ~OpenFile() { static_cast<void>(closed()); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  [[nodiscard]] int number() const { return number_; }

  /// Throws where the system could not even do that.
  void close() {
    if (!closed()) throwUnlessAnswer(errno);
  }

 private:
  bool closed() {
    return number_ < 0 || ::close(std::exchange(number_, -1)) == 0 || errno == EINTR;
  }

  int number_ = -1;
};

/// The size of a regular file, or nothing.
std::optional<std::size_t> regularSize(int file) {
  struct stat status {};
  if (file < 0) return std::nullopt;
  if (uninterrupted([&] { return ::fstat(file, &status); }) != 0) {
    throwUnlessAnswer(errno);
    return std::nullopt;
  }
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  return static_cast<std::size_t>(status.st_size);
}

/// At a place of its own in the file: for a moment its descriptor may have had the number of a
/// closed standard stream, and a thread of the host's that read there has moved on in it.
ssize_t readAt(int file, std::size_t place, char* bytes, std::size_t length) {
  const auto offset = static_cast<off_t>(place);
  const ssize_t count = uninterrupted([&] { return ::pread(file, bytes, length, offset); });
  if (count < 0) throwUnlessAnswer(errno);
  return count;
}

}  // namespace

std::optional<std::string> readWhole(const std::string& path, std::size_t bound) {
  OpenFile file(path);
  const auto size = regularSize(file.number());
  if (!size || *size > bound) return std::nullopt;
  // Room for more than the file holds, so that a read of its very size tells its end. One that has
  // grown meanwhile, or that the kernel makes up as it is read and so has no size, takes more
  // rounds.
  constexpr std::size_t least = 4096;
  std::string bytes(std::min(std::max(*size + 1, least), bound + 1), '\0');
  std::size_t length = 0;
  while (true) {
    const ssize_t count =
        readAt(file.number(), length, bytes.data() + length, bytes.size() - length);
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > bound) return std::nullopt;
    if (length == *size) break;
    if (length == bytes.size()) bytes.resize(std::min(2 * length, bound + 1));
  }
  bytes.resize(length);
  file.close();
  return bytes;
}

}  // namespace wenlolib::platform::posix
