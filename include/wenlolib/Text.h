/// Text as it crosses the library's interface.
#ifndef WENLOLIB_TEXT_H
#define WENLOLIB_TEXT_H

#if __cplusplus < 202002L
#error "WENLOLIB needs C++20"
#endif

#include <optional>
#include <string>

namespace wenlolib {

/// A string in UTF-8, or null: `std::nullopt` is the null string, which is not the same as the
/// empty one. Wherever the library is given bytes that are not UTF-8, they count as null. A NUL
/// inside the text is a character like any other.
using Text = std::optional<std::string>;

}  // namespace wenlolib

#endif
