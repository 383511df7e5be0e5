#include "platform/posix/WholeFile.h"

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
#include "platform/posix/SystemCalls.h"

namespace wenlolib::platform::posix {
namespace {

int openOnce(const char* path) {
  return uninterrupted([&] { return ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
}

/// If somebody holds a lease on the file, the first call has asked for it back, and it may soon be
/// given up.
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

struct Opened {
  int number;
  int error = 0;  // why it is not open
};

Opened openFile(const std::string& path) {
  const int number = aboveStandard(openPatiently(path.c_str()));
  if (number >= 0) return {number};
  const int error = errno;
  if (isAnswer(error)) return {number, error};
  if (!isSpecial(path)) throw NoAnswer({Step::openFile, error});
  return {number};
}

struct Size {
  std::optional<std::size_t> bytes;  // of a regular file
  Reason reason;
};

Size sizeOf(const Descriptor& file, std::size_t bound) {
  struct stat status {};
  if (uninterrupted([&] { return ::fstat(file.number(), &status); }) != 0) {
    throwUnlessAnswer(Step::readFile, errno);
    return {{}, {Step::readFile, errno}};
  }
  if (!S_ISREG(status.st_mode)) return {{}, {Step::openFile, S_ISDIR(status.st_mode) ? EISDIR : 0}};
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > bound) return {{}, {Step::readFile, EFBIG}};
  return {size, {}};
}

/// Reads at a given place, not at the descriptor's position: for a moment the descriptor may have
/// had the number of a closed standard stream, and a thread of the host that read from there has
/// moved the position.
ssize_t readAt(int file, std::size_t place, char* bytes, std::size_t length) {
  const auto offset = static_cast<off_t>(place);
  const ssize_t count = uninterrupted([&] { return ::pread(file, bytes, length, offset); });
  if (count < 0) throwUnlessAnswer(Step::readFile, errno);
  return count;
}

}  // namespace

WholeFile readWhole(const std::string& path, std::size_t bound) {
  const Opened opened = openFile(path);
  if (opened.number < 0) return {{}, {Step::openFile, opened.error}};
  SystemCalls calls;
  Descriptor file(calls, opened.number);
  const Size size = sizeOf(file, bound);
  if (!size.bytes) return {{}, size.reason};
  // Room for more than the file holds, so that a read of exactly its size shows that it ends there.
  // A file that has grown meanwhile takes more rounds, and so does one without a size, which the
  // kernel makes up as it is read.
  constexpr std::size_t least = 4096;
  std::string bytes(std::min(std::max(*size.bytes + 1, least), bound + 1), '\0');
  std::size_t length = 0;
  while (true) {
    const ssize_t count =
        readAt(file.number(), length, bytes.data() + length, bytes.size() - length);
    if (count < 0) return {{}, {Step::readFile, errno}};
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
    if (length > bound) return {{}, {Step::readFile, EFBIG}};
    if (length == *size.bytes) break;
    if (length == bytes.size()) bytes.resize(std::min(2 * length, bound + 1));
  }
  bytes.resize(length);
  if (!file.close()) throwUnlessAnswer(Step::readFile, errno);
  return {std::move(bytes), {}};
}

}  // namespace wenlolib::platform::posix
