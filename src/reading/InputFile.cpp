#include "reading/InputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace wenlolib {

std::string systemMessage(int error) {
  return error == EISDIR ? "it is a folder" : std::generic_category().message(error);
}

/// Whether the call that failed is to be made again.
static bool isToBeRepeated(Stop stop) {
  return errno == EINTR && (stop == nullptr || !stop());
}

InputFile::InputFile(const std::string& path, Stop stop, int flags) : stop_(stop) {
  do {
    number_ = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | flags);
  } while (number_ < 0 && isToBeRepeated(stop));
}

InputFile InputFile::standardInput(Stop stop) {
  return {STDIN_FILENO, stop, false};
}

InputFile::~InputFile() {
  if (owned_ && number_ >= 0) close(number_);
}

ssize_t InputFile::readSome(char* bytes, std::size_t size) const {
  ssize_t count = -1;
  do {
    count = read(number_, bytes, size);
  } while (count < 0 && isToBeRepeated(stop_));
  return count;
}

InputFile::Reading InputFile::readAll(std::size_t expected, std::size_t most,
                                      std::string& buffer) const {
  std::size_t length = 0;
  for (;;) {
    const ssize_t count = readSome(buffer.data() + length, buffer.size() - length);
    if (count < 0) return {length, errno};
    length += static_cast<std::size_t>(count);
    if (length > most) return {length, EFBIG};
    if (count == 0 || length == expected) return {length, 0};
    if (length == buffer.size()) buffer.resize(2 * length);
  }
}

}  // namespace wenlolib
