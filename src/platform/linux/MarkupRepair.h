/// Mending markup that a value has brought into a document.
#ifndef WENLOLIB_PLATFORM_LINUX_MARKUPREPAIR_H
#define WENLOLIB_PLATFORM_LINUX_MARKUPREPAIR_H

#include <string>
#include <string_view>

namespace wenlolib::platform::gnulinux {

/// `text` with every "&" that begins no reference and every "<" that begins no tag escaped; all
/// else stays as it is, and may still be malformed. A reference is one of the five that XML knows
/// by name, or one by number.
[[nodiscard]] std::string withStrayMarkupEscaped(std::string_view text);

}  // namespace wenlolib::platform::gnulinux

#endif
