/// Numbers and times as a person reads them.
#ifndef WENLOLIB_TOOLS_TERMINAL_FORMAT_H
#define WENLOLIB_TOOLS_TERMINAL_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace wenlolib::tools {

/// "0 B", "299 B", "2.1 KiB", "16.0 MiB".
[[nodiscard]] std::string sizeText(std::uint64_t bytes);

/// "1,234,567".
[[nodiscard]] std::string groupDigits(std::uint64_t number);

/// "1 document", "2,000 documents".
[[nodiscard]] std::string countText(std::uint64_t number, std::string_view noun);

/// "2024-03-15 09:05:07 +09:00", in the reader's time zone.
[[nodiscard]] std::string localTime(std::time_t time);

}  // namespace wenlolib::tools

#endif
