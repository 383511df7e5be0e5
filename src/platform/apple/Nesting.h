/// How deep a property list goes, before it is parsed.
#ifndef WENLOLIB_PLATFORM_APPLE_NESTING_H
#define WENLOLIB_PLATFORM_APPLE_NESTING_H

#include <cstddef>
#include <string_view>

namespace wenlolib::platform::apple {

/// Whether a property-list file nests at most `levels` deep below its root. Never true for one that
/// a parser could go further down in; false for most malformed files, and for XML that two parsers
/// might take for different markup. Takes time and memory in proportion to the file.
[[nodiscard]] bool nestsAtMost(std::size_t levels, std::string_view file);

/// Whether the elements of an XML file, those without a closing tag of their own left out, are at
/// most `levels` deep inside each other. Read are encodings that have ASCII in them byte for byte,
/// and UTF-16 behind a byte order mark. False wherever it takes a guess to tell where a tag, a
/// comment, an instruction or the document type ends, for a document type with declarations of its
/// own, and for a closing tag with nothing to close.
[[nodiscard]] bool xmlNestsAtMost(std::size_t levels, std::string_view file);

/// Whether a file in the older text form, "{ key = (item, item); }", has no more containers than
/// `levels` in all, wherever they stand: quotes and comments need not be understood for that.
[[nodiscard]] bool oldFormNestsAtMost(std::size_t levels, std::string_view file);

/// The same as the first for a file that begins like a binary one.
[[nodiscard]] bool binaryNestsAtMost(std::size_t levels, std::string_view file);

}  // namespace wenlolib::platform::apple

#endif
