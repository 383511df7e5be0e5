/// One file that is read: a document, or the contents of a record.
#ifndef WENLOLIB_READING_INPUTFILE_H
#define WENLOLIB_READING_INPUTFILE_H

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace wenlolib {

/// The system's message for an error number.
[[nodiscard]] std::string systemMessage(int error);

/// Asked when a signal interrupts a read: whether to give it up. Null goes on reading.
using Stop = bool (*)();

/// Open for reading, and closed at the end of the scope. Standard input stays open.
class InputFile {
 public:
  /// `flags` are further flags for `open`.
  explicit InputFile(const std::string& path, int flags = 0);
  [[nodiscard]] static InputFile standardInput();
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  /// Below 0 if it could not be opened; `errno` then says why.
  [[nodiscard]] int number() const { return number_; }

  struct Reading {
    std::size_t length = 0;  // bytes at the front of the buffer
    int error = 0;           // EFBIG for more than `most` bytes
  };

  /// Reads to the end. The buffer, which must be larger than `expected`, grows as needed and never
  /// shrinks. If the file has `expected` bytes, not 0, its end is known without another call.
  [[nodiscard]] Reading readAll(std::size_t expected, std::size_t most, std::string& buffer,
                                Stop stop) const;

  /// One `read`, as often as signals interrupt it. Below 0, with `errno`, if it fails.
  [[nodiscard]] ssize_t readSome(char* bytes, std::size_t size, Stop stop) const;

 private:
  InputFile(int number, bool owned) : number_(number), owned_(owned) {}

  int number_;
  bool owned_ = true;
};

}  // namespace wenlolib

#endif
