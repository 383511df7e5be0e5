#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

namespace wenlolib::tools {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

std::string_view sequence(Colour colour) {
  switch (colour) {
    case Colour::good:
      return "\x1B[32m";
    case Colour::doubtful:
      return "\x1B[33m";
    case Colour::bad:
      return "\x1B[31m";
    case Colour::heading:
      return "\x1B[1m";
    case Colour::faint:
      return "\x1B[2m";
  }
  return "";
}

}  // namespace

bool isTerminal(std::FILE* stream) {
  const int file = fileno(stream);
  return file >= 0 && isatty(file) == 1;
}

bool hasColours(std::FILE* stream) {
  return isTerminal(stream) && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

bool hasProgress(std::FILE* stream) {
  return isTerminal(stream) && environment("TERM") != "dumb";
}

std::size_t columnsOf(std::FILE* stream) {
  winsize size{};
  const bool known = ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

std::string Paint::operator()(Colour colour, std::string_view text) const {
  if (!on_ || text.empty()) return std::string(text);
  return std::string(sequence(colour)) + std::string(text) + "\x1B[0m";
}

}  // namespace wenlolib::tools
