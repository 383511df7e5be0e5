/// Property lists, in XML form and in binary form.
#ifndef WENLOLIB_PLIST_PROPERTYLIST_H
#define WENLOLIB_PLIST_PROPERTYLIST_H

#include <cstddef>
#include <string_view>

#include "platform/PropertyLists.h"
#include "plist/Bounds.h"

namespace wenlolib::plist {

/// The exact beginning of an XML property list that a current program wrote.
inline constexpr std::string_view prologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

/// What a file of these bytes holds. Any bytes give a result in bounded time and memory.
///
/// A value that cannot be represented does not cost the others: half of a surrogate pair in a text,
/// a number or a date out of range, characters that are not base64. It is left out, and the reading
/// is `partial`. A key that cannot be represented is left out with its value. The text form in
/// braces is refused. Throws std::bad_alloc.
[[nodiscard]] platform::ListReading read(std::string_view bytes);

/// `dictionary` as an XML property list. Null if it holds a value that the form cannot represent,
/// or exceeds the bounds.
[[nodiscard]] Text write(const Dictionary& dictionary);

/// The two forms by themselves. `readXml` takes any encoding that expat knows. A plain document
/// needs no parser. With a false `plainFirst` the parser is used all the same, to compare the two.
[[nodiscard]] platform::ListReading readBinary(std::string_view bytes);
[[nodiscard]] platform::ListReading readXml(std::string_view bytes, bool plainFirst = true);

}  // namespace wenlolib::plist

#endif
