/// Reading the contents of a record.
#ifndef WENLOLIB_TOOLS_CONTENTSINPUT_H
#define WENLOLIB_TOOLS_CONTENTSINPUT_H

#include <cstddef>
#include <string>

namespace wenlolib::tools {

/// Contents, or what is wrong with them.
struct ContentsInput {
  std::string contents;
  std::string complaint;  // "" where they will do
};

/// The library refuses contents of 2 GiB and more.
inline constexpr std::size_t mostContents = (std::size_t{1} << 31) - 1;

/// All of the file at `path`, or of standard input for "-", in UTF-8 and of at most `most` bytes.
[[nodiscard]] ContentsInput readContents(const std::string& path, std::size_t most = mostContents);

}  // namespace wenlolib::tools

#endif
