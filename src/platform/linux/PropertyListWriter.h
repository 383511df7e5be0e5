/// Dictionaries as XML property lists.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTWRITER_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTWRITER_H

#include "base/Text.h"
#include "base/Value.h"

namespace wenlolib::platform::gnulinux {

/// `dictionary` as the document that `parsePropertyList` gives back as it was, dates in whole
/// seconds; entries in the order of their keys. Null where it could not be read again, or not
/// whole: a text or key that is not UTF-8 or holds a character that XML has no form for (most
/// control characters, U+FFFE, U+FFFF), a date that is not finite or out of the calendar's reach,
/// more levels or a longer document than PropertyListBounds.h allows. Throws `std::bad_alloc`.
[[nodiscard]] Text propertyListXml(const Dictionary& dictionary);

}  // namespace wenlolib::platform::gnulinux

#endif
