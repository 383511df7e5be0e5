/// Text that somebody else wrote, on a terminal.
#ifndef WENLOLIB_TOOLS_VISIBLETEXT_H
#define WENLOLIB_TOOLS_VISIBLETEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace wenlolib::tools {

/// The text with everything that could steer a terminal or hide something spelled out: \x1B for
/// control characters and bytes that are not UTF-8, \u{202E} for controls of the writing direction
/// and other invisible ones. Line breaks and tabs stay.
[[nodiscard]] std::string visible(std::string_view text);

/// The same for a text that has to stay within its line: \n and \t as well.
[[nodiscard]] std::string visibleInLine(std::string_view text);

/// How many columns a terminal takes for the text. Colours take none, most East Asian characters
/// and pictures two.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text broken between words, so that no line is wider than `width`; all lines but the first
/// begin with `indent` blanks. A word that is too long stays whole.
[[nodiscard]] std::string wrapped(std::string_view text, std::size_t width, std::size_t indent);

}  // namespace wenlolib::tools

#endif
