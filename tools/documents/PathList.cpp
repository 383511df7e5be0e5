#include "documents/PathList.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string_view>

#include "reading/InputFile.h"
#include "terminal/Interrupt.h"

namespace wenlolib::tools {
namespace {

/// "-" is standard input on the command line only.
std::string pathOf(std::string_view name) {
  return name == "-" ? "./-" : std::string(name);
}

}  // namespace

std::string appendPaths(const std::string& file, char end, std::vector<std::string>& paths) {
  const InputFile input =
      file == "-" ? InputFile::standardInput(interrupted) : InputFile(file, interrupted);
  if (input.number() < 0) return systemMessage(errno);
  constexpr std::size_t piece = std::size_t{64} << 10;
  constexpr std::size_t most = std::size_t{1} << 30;
  std::string buffer(piece, '\0');
  const auto [length, error] = input.readAll(0, most, buffer);
  if (error != 0) return systemMessage(error);
  const std::string_view text(buffer.data(), length);
  paths.reserve(paths.size() + static_cast<std::size_t>(std::ranges::count(text, end)) + 1);
  for (std::size_t at = 0; at < length;) {
    const std::size_t stop = std::min(text.find(end, at), length);
    if (stop > at) paths.push_back(pathOf(text.substr(at, stop - at)));
    at = stop + 1;
  }
  return "";
}

}  // namespace wenlolib::tools
