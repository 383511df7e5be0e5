/// Whether somebody is looking, and colours for them.
#ifndef WENLOLIB_TOOLS_TERMINAL_H
#define WENLOLIB_TOOLS_TERMINAL_H

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace wenlolib::tools {

[[nodiscard]] bool isTerminal(std::FILE* stream);

/// On a terminal that has them, unless NO_COLOR is set to anything but the empty text.
[[nodiscard]] bool hasColours(std::FILE* stream);

/// On a terminal that can go back in its line.
[[nodiscard]] bool hasProgress(std::FILE* stream);

/// The columns of a terminal; 80 where they are not known.
[[nodiscard]] std::size_t columnsOf(std::FILE* stream);

enum class Colour { good, doubtful, bad, heading, faint };

/// Puts colours around texts, or leaves them as they are.
class Paint {
 public:
  explicit Paint(bool on) : on_(on) {}

  [[nodiscard]] std::string operator()(Colour colour, std::string_view text) const;

 private:
  bool on_;
};

}  // namespace wenlolib::tools

#endif
