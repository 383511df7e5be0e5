/// Why something could not be done. No result of the library depends on a reason: it is for the
/// person who asks why a record is missing.
#ifndef WENLOLIB_PLATFORM_REASON_H
#define WENLOLIB_PLATFORM_REASON_H

#include <cstdint>
#include <system_error>

namespace wenlolib::platform {

/// What was being done.
enum class Step : std::uint8_t {
  none,
  askSystem,  // for its version
  askUser,    // for the user's entry in the user database
  askClock,
  takeRandomness,
  findFile,
  openFile,
  readFile,
  findFolder,
  makeFile,
  makeFolder,
  writeFile,
  flushFile,
  nameFile,
};

struct Reason {
  Step step = Step::none;  // `none` if nothing has failed
  int error = 0;           // the system's error number (errno); 0 if the system has not refused

  [[nodiscard]] bool hasFailed() const noexcept { return step != Step::none; }
};

/// Thrown if the system could not answer what a step asked it.
class NoAnswer : public std::system_error {
 public:
  explicit NoAnswer(Reason reason)
      : std::system_error(reason.error, std::generic_category()), reason_(reason) {}
  [[nodiscard]] Reason reason() const noexcept { return reason_; }

 private:
  Reason reason_;
};

}  // namespace wenlolib::platform

#endif
