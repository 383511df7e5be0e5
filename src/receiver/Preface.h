/// What may stand before a document's wrapper.
#ifndef WENLOLIB_RECEIVER_PREFACE_H
#define WENLOLIB_RECEIVER_PREFACE_H

#include <cstddef>
#include <string_view>

namespace wenlolib::receiver {

inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
inline constexpr std::string_view whiteSpace = " \t\r\n";

/// The length of the XML declaration that `bytes` begins with. 0 if there is none, if it is not
/// well-formed, or if it names an encoding other than UTF-8. Throws std::bad_alloc.
[[nodiscard]] std::size_t declarationLength(std::string_view bytes);

/// What follows a byte order mark, white space, an XML declaration and white space, each of which
/// may be missing.
[[nodiscard]] std::string_view afterPreface(std::string_view bytes);

}  // namespace wenlolib::receiver

#endif
