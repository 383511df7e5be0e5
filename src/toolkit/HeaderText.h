/// Texts made fit for the header of a document.
#ifndef WENLOLIB_TOOLKIT_HEADERTEXT_H
#define WENLOLIB_TOOLKIT_HEADERTEXT_H

#include <cstddef>
#include <span>
#include <string_view>

namespace wenlolib {

/// The most bytes of a text that is made fit.
inline constexpr std::size_t longestHeaderText = 1023;

/// Writes `text` into `buffer`, with "_" for what a serialiser would change or refuse, and cut at a
/// character to what both the buffer and a header value may hold. The buffer may begin where the
/// text begins. Returns the number of bytes written.
std::size_t fillHeaderText(std::string_view text, std::span<char> buffer) noexcept;

}  // namespace wenlolib

#endif
