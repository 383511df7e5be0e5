/// UTF-16 texts of the binary property lists.
#ifndef WENLOLIB_PLATFORM_LINUX_UTF16_H
#define WENLOLIB_PLATFORM_LINUX_UTF16_H

#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::platform::gnulinux {

/// The text that `bytes`, an even number of them, spell in UTF-16 with the higher byte first, in
/// UTF-8. Nothing where a surrogate has no partner.
[[nodiscard]] std::optional<std::string> utf8FromUtf16(std::string_view bytes);

}  // namespace wenlolib::platform::gnulinux

#endif
