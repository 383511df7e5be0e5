/// The markup of an XML file, whatever its encoding.
#ifndef WENLOLIB_PLATFORM_APPLE_XMLNARROWING_H
#define WENLOLIB_PLATFORM_APPLE_XMLNARROWING_H

#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::platform::apple {

/// Whether a file has a byte order mark of UTF-16.
[[nodiscard]] bool isInWideUnits(std::string_view file);

/// A file as bytes that are the ASCII characters in it; all its other characters are bytes outside
/// ASCII. A byte order mark is left out. Nothing for one with a NUL in it, or half a unit of
/// UTF-16.
[[nodiscard]] std::optional<std::string> narrowed(std::string_view file);

/// Whether what stands between "<?" and "?>" names no encoding, or, in the plainest form there is,
/// one in which the file is what `narrowed` takes it for. Any other could spell its tags in bytes
/// that do not look like any.
[[nodiscard]] bool namesKnownEncoding(std::string_view instruction, bool inWideUnits);

}  // namespace wenlolib::platform::apple

#endif
