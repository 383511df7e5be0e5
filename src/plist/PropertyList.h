/// Property lists, in their XML form and in their binary one.
#ifndef WENLOLIB_PLIST_PROPERTYLIST_H
#define WENLOLIB_PLIST_PROPERTYLIST_H

#include <cstddef>
#include <string_view>

#include "platform/PropertyLists.h"
#include "plist/Bounds.h"

namespace wenlolib::plist {

/// How an XML property list begins, to the letter, when a program of our time wrote it.
inline constexpr std::string_view prologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

/// What a file of these bytes holds. Any bytes at all get an answer in bounded time and memory.
///
/// One value that cannot be carried does not cost the others: half of a surrogate pair in a text, a
/// number or a date out of range, characters that are no base64. It is left out, a key that cannot
/// be carried with its value, and the reading is `partial`. The text form in braces is refused.
/// Throws std::bad_alloc.
[[nodiscard]] platform::ListReading read(std::string_view bytes);

/// `dictionary` as an XML property list. Null when it holds a value that the form cannot carry, and
/// beyond the bounds.
[[nodiscard]] Text write(const Dictionary& dictionary);

/// The two forms by themselves. `readXml` takes any encoding that expat knows. A plain document
/// needs no parser; `plainFirst` is false for whoever compares the two.
[[nodiscard]] platform::ListReading readBinary(std::string_view bytes);
[[nodiscard]] platform::ListReading readXml(std::string_view bytes, bool plainFirst = true);

}  // namespace wenlolib::plist

#endif
