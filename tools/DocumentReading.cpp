#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Documents.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t keptBytes = std::size_t{1} << 20;

class OpenFile {
 public:
  explicit OpenFile(int file) : file_(file) {}
  ~OpenFile() {
    if (file_ >= 0) close(file_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

  [[nodiscard]] int get() const { return file_; }

 private:
  int file_;
};

Reading refused(std::string complaint) {
  return {{}, std::move(complaint), false};
}

Reading failed(int number) {
  return refused(std::generic_category().message(number));
}

const char* kindName(mode_t mode) {
  if (S_ISDIR(mode)) return "a folder";
  if (S_ISFIFO(mode)) return "a pipe";
  if (S_ISSOCK(mode)) return "a socket";
  return "a device";
}

Reading notRegular(mode_t mode) {
  return refused(std::string("skipped: it is ") + kindName(mode) + ", not a regular file");
}

/// Nothing stands at the path any more, not even a link that leads nowhere.
bool isGone(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

Reading missing(const Candidate& candidate, int number) {
  if (number == ENOENT && !candidate.named && isGone(candidate.path)) return {{}, "", true};
  return failed(number);
}

/// One read, whatever signals arrive.
ssize_t readSome(int file, char* place, std::size_t room) {
  for (;;) {
    const ssize_t count = read(file, place, room);
    if (count >= 0 || errno != EINTR) return count;
  }
}

/// Room for the expected bytes and one more, whose absence shows the end without another call.
void makeRoom(std::string& buffer, std::size_t room) {
  if (buffer.size() > keptBytes && room <= keptBytes) std::string().swap(buffer);
  if (buffer.size() < room) buffer.resize(room);
}

Reading readAll(int file, std::size_t expected, std::string& buffer) {
  makeRoom(buffer, expected + 1);
  std::size_t length = 0;
  for (;;) {
    const ssize_t count = readSome(file, buffer.data() + length, buffer.size() - length);
    if (count < 0) return failed(errno);
    length += static_cast<std::size_t>(count);
    // A regular file reads short at its end alone.
    if (count == 0 || length == expected) return {{buffer.data(), length}, "", false};
    if (length > largestDocument) return refused("larger than any document");
    if (length == buffer.size()) buffer.resize(2 * length);
  }
}

}  // namespace

Reading readDocument(const Candidate& candidate, std::string& buffer) {
  struct stat status {};
  // Opening alone can do something to a device: what may be one is asked about before.
  if (!candidate.regular) {
    if (stat(candidate.path.c_str(), &status) != 0) return missing(candidate, errno);
    if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  }
  const OpenFile file(open(candidate.path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.get() < 0) return missing(candidate, errno);
  if (fstat(file.get(), &status) != 0) return failed(errno);
  if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > largestDocument) return refused("larger than any document");
  return readAll(file.get(), size, buffer);
}

}  // namespace wenlolib::tools
