#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "base/EnumTable.h"

namespace wenlolib::tools {
namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

constexpr EnumTable<Colour, std::string_view> sequences({
    {Colour::good, "\x1B[32m"},
    {Colour::doubtful, "\x1B[33m"},
    {Colour::bad, "\x1B[31m"},
    {Colour::heading, "\x1B[1m"},
    {Colour::faint, "\x1B[2m"},
});

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
  return std::string(sequences[colour]) + std::string(text) + "\x1B[0m";
}

}  // namespace wenlolib::tools
