/// Numbers and times for a person.
#ifndef WENLOLIB_TOOLS_TERMINAL_FORMAT_H
#define WENLOLIB_TOOLS_TERMINAL_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::tools {

/// "0 B", "299 B", "2.1 KiB", "16.0 MiB".
[[nodiscard]] std::string sizeText(std::uint64_t bytes);

/// "1,234,567".
[[nodiscard]] std::string groupDigits(std::uint64_t number);

/// "1 document", "2,000 documents".
[[nodiscard]] std::string countText(std::uint64_t number, std::string_view noun);

/// "2024-03-15 09:05:07 +09:00", in the time zone of whoever reads it.
[[nodiscard]] std::string localTime(std::time_t time);

/// The moment that a document's date text names, such as 2024-03-15T09:05:07+09:00; the offset may
/// lack its colon. Nothing when it is no such text.
[[nodiscard]] std::optional<std::time_t> momentOf(std::string_view dateText);

}  // namespace wenlolib::tools

#endif
