#include "platform/apple/Nesting.h"

#include <algorithm>

namespace wenlolib::platform::apple {
namespace {

bool contains(std::string_view file, std::string_view text) {
  return file.find(text) != std::string_view::npos;
}

}  // namespace

bool oldFormNestsAtMost(std::size_t levels, std::string_view file) {
  // To a reader of XML, which may have its turn first, nothing goes down but arrays and
  // dictionaries. A declaration could name an encoding that spells them otherwise; wider units hold
  // NULs.
  for (const std::string_view markup : {"<array", "<dict", "<?"}) {
    if (contains(file, markup)) return false;
  }
  if (contains(file, std::string_view("\0", 1))) return false;
  const auto opened = std::ranges::count(file, '{') + std::ranges::count(file, '(');
  return static_cast<std::size_t>(opened) <= levels;
}

bool nestsAtMost(std::size_t levels, std::string_view file) {
  if (file.starts_with("bplist")) return binaryNestsAtMost(levels, file);
  // The element around the root and the leaves add two levels.
  return xmlNestsAtMost(levels + 2, file) || oldFormNestsAtMost(levels, file);
}

}  // namespace wenlolib::platform::apple
