#include "reading/InputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace wenlolib {

std::string systemMessage(int error) {
  return error == EISDIR ? "it is a folder" : std::generic_category().message(error);
}

InputFile::InputFile(const std::string& path, int flags)
    : number_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | flags)) {}

InputFile InputFile::standardInput() {
  return {STDIN_FILENO, false};
}

InputFile::~InputFile() {
  if (owned_ && number_ >= 0) close(number_);
}

ssize_t InputFile::readSome(char* bytes, std::size_t size, Stop stop) const {
  ssize_t count = -1;
  do {
    count = read(number_, bytes, size);
  } while (count < 0 && errno == EINTR && (stop == nullptr || !stop()));
  return count;
}

InputFile::Reading InputFile::readAll(std::size_t expected, std::size_t most, std::string& buffer,
                                      Stop stop) const {
  std::size_t length = 0;
  for (;;) {
    const ssize_t count = readSome(buffer.data() + length, buffer.size() - length, stop);
    if (count < 0) return {length, errno};
    length += static_cast<std::size_t>(count);
    if (length > most) return {length, EFBIG};
    if (count == 0 || length == expected) return {length, 0};
    if (length == buffer.size()) buffer.resize(2 * length);
  }
}

}  // namespace wenlolib
