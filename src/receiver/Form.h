/// Documents that the walk went through, and whether their form holds.
#ifndef WENLOLIB_RECEIVER_FORM_H
#define WENLOLIB_RECEIVER_FORM_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "receiver/Walk.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {

/// A document each byte of which is known to be markup of the layout or a part of a value.
struct Whole {
  const Walk& walk;
  std::string_view digits;
  std::size_t validDigits = 0;  // the number of digits that the payload begins with
  std::string payload;          // the payload in bytes, deciphered in the end
  std::string_view marker;
  std::string_view date;

  explicit Whole(const Walk& complete);

  [[nodiscard]] std::size_t offsetOf(std::string_view value) const { return walk.offsetOf(value); }
};

/// True for a value that needs no parser: it holds nothing but characters which stand for
/// themselves wherever they are. False says nothing.
[[nodiscard]] bool isPlain(std::string_view value);

/// What is wrong in the layers up to `hexadecimal`, in their order.
[[nodiscard]] std::optional<Verdict> formVerdict(const Whole& whole);

}  // namespace wenlolib::receiver

#endif
