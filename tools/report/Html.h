/// Texts in HTML.
#ifndef WENLOLIB_TOOLS_REPORT_HTML_H
#define WENLOLIB_TOOLS_REPORT_HTML_H

#include <string>
#include <string_view>

namespace wenlolib::tools {

/// Any bytes as text of a page, in an element or an attribute's quotes: never markup, and always
/// UTF-8. What could hide something or turn the writing direction is spelled out, as on a terminal.
[[nodiscard]] std::string html(std::string_view text);

/// The same between tags that keep its writing direction from those around it.
[[nodiscard]] std::string isolated(std::string_view text);

}  // namespace wenlolib::tools

#endif
