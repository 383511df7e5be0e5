/// The system calls that create and name a file.
#ifndef WENLOLIB_PLATFORM_POSIX_SYSTEMCALLS_H
#define WENLOLIB_PLATFORM_POSIX_SYSTEMCALLS_H

#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace wenlolib::platform::posix {

/// Whether a link at the end of a path is followed.
enum class Links : std::uint8_t { followed, notFollowed };

/// These correspond to the system's calls, results and `errno` included. They are in a class so
/// that a test can watch their order and make each of them fail. `folder` is a descriptor. Those
/// that open return a descriptor above the standard ones.
class SystemCalls {
 public:
  virtual ~SystemCalls() = default;

  virtual int openFolder(const char* path);
  virtual int create(int folder, const char* name);  // new, for writing, no link followed
  virtual int open(int folder, const char* name);    // for reading, no link followed
  virtual ssize_t write(int file, const void* bytes, std::size_t length);
  virtual int changeMode(int file, mode_t mode);
  virtual int flush(int file);
  virtual int lock(int file);  // exclusively; does not wait
  virtual int close(int file);
  virtual int rename(int folder, const char* from, const char* to);
  virtual int renameWithoutReplacing(int folder, const char* from, const char* to);
  virtual int link(int folder, const char* from, const char* to);
  virtual int remove(int folder, const char* name);
  virtual int status(int folder, const char* name, Links links, struct stat& status);
};

/// A descriptor, closed at the end of the scope.
class Descriptor {
 public:
  Descriptor(SystemCalls& calls, int number) : calls_(calls), number_(number) {}
  ~Descriptor() { static_cast<void>(close()); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool valid() const { return number_ >= 0; }
  [[nodiscard]] int number() const { return number_; }

  /// False if the system reports that what was written may be lost. An interrupted close has closed
  /// the file all the same and must not be repeated: the number may be somebody else's by then.
  [[nodiscard]] bool close() {
    if (!valid()) return true;
    const int result = calls_.close(number_);
    number_ = -1;
    return result == 0 || errno == EINTR;
  }

 private:
  SystemCalls& calls_;
  int number_;
};

}  // namespace wenlolib::platform::posix

#endif
