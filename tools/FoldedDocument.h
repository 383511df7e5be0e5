/// A document in lines that fit.
#ifndef WENLOLIB_TOOLS_FOLDEDDOCUMENT_H
#define WENLOLIB_TOOLS_FOLDEDDOCUMENT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace wenlolib::tools {

/// A line for every element, longer ones folded to stay within `width`; each begins with two
/// blanks. No character stands at the breaks. Of an element with more than 2 KiB the beginning is
/// shown, and how much was left out.
[[nodiscard]] std::string foldedDocument(std::string_view document, std::size_t width);

}  // namespace wenlolib::tools

#endif
