/// The persistent identifier of this library's installation.
#ifndef WENLOLIB_RECORD_IDENTIFIER_H
#define WENLOLIB_RECORD_IDENTIFIER_H

#include <optional>
#include <string>

#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib {

/// The identifier that a configuration file holds. Null where one is still to be made: the entry is
/// missing, no text, or the placeholder "NOTDETERMINED". A stored empty text stands.
[[nodiscard]] Text storedIdentifier(const std::optional<Dictionary>& configuration);

/// The identifier from the library's configuration file. Where that has none, makes one and stores
/// it there, every other entry kept; where it cannot be stored, the one made is still the answer.
/// It cannot be stored beside an entry that an XML property list does not carry (a control
/// character in a text, say): keeping what others have put there counts for more. Null when the
/// platform has no identifiers to give.
[[nodiscard]] Text installationIdentifier();

/// The installation identifier by way of a record's cache: asked for where `cache` is null, and
/// kept there. "" when there is none to be had.
[[nodiscard]] std::string cachedIdentifier(Text& cache);

}  // namespace wenlolib

#endif
