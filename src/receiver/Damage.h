/// What is wrong with the form of a document: truncated, damaged, and where.
#ifndef WENLOLIB_RECEIVER_DAMAGE_H
#define WENLOLIB_RECEIVER_DAMAGE_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "receiver/Match.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::receiver {

/// The verdict on a document that does not fit any layout from its first byte to its last.
[[nodiscard]] Verdict misfit(const Match& match);

/// A document in which every byte is known to be markup of the layout or part of a value.
struct Whole {
  const Match& match;
  std::string_view digits;
  std::size_t validDigits = 0;  // the number of digits that the payload begins with
  std::string payload;          // the payload in bytes, deciphered in the end
  std::string_view marker;
  std::string_view date;

  explicit Whole(const Match& complete);

  [[nodiscard]] std::size_t offsetOf(std::string_view value) const { return match.offsetOf(value); }
};

/// True for a value that needs no parser: it holds only characters that stand for themselves
/// everywhere. False says nothing about the value.
[[nodiscard]] bool isPlain(std::string_view value);

/// What is wrong in the layers up to `hexadecimal`, in their order.
[[nodiscard]] std::optional<Verdict> formVerdict(const Whole& whole);

}  // namespace wenlolib::receiver

#endif
