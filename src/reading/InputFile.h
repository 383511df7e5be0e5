/// One file that is read: a document, or the contents of a record.
#ifndef WENLOLIB_READING_INPUTFILE_H
#define WENLOLIB_READING_INPUTFILE_H

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace wenlolib {

/// The system's message for an error number.
[[nodiscard]] std::string systemMessage(int error);

/// Asked when a signal interrupts waiting for a file: whether to give up. Null keeps waiting.
using Stop = bool (*)();

/// Open for reading, and closed at the end of the scope. Standard input stays open.
class InputFile {
 public:
  /// `flags` are further flags for `open`.
  InputFile(const std::string& path, Stop stop, int flags = 0);
  [[nodiscard]] static InputFile standardInput(Stop stop);
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
  [[nodiscard]] Reading readAll(std::size_t expected, std::size_t most, std::string& buffer) const;

  /// One `read`, repeated if a signal interrupts it. Below 0, with `errno`, if it fails.
  [[nodiscard]] ssize_t readSome(char* bytes, std::size_t size) const;

 private:
  InputFile(int number, Stop stop, bool owned) : number_(number), stop_(stop), owned_(owned) {}

  int number_ = -1;
  Stop stop_;
  bool owned_ = true;
};

}  // namespace wenlolib

#endif
