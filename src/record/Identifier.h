/// The persistent identifier of this library's installation.
#ifndef WENLOLIB_RECORD_IDENTIFIER_H
#define WENLOLIB_RECORD_IDENTIFIER_H

#include <optional>
#include <string>

#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib {

/// The identifier's entry in the configuration file.
inline constexpr char identifierKey[] = "WENLIBUUID";

/// The identifier that a configuration file holds. Null if one must still be made: the entry is
/// missing, is not text, or is the placeholder "NOTDETERMINED". A stored empty text counts as an
/// identifier.
[[nodiscard]] Text storedIdentifier(const std::optional<Dictionary>& configuration);

/// The identifier from the library's configuration file. If that has none, makes one and stores it
/// there, keeping every other entry. If it cannot be stored, it is returned all the same. It is not
/// stored beside an entry that an XML property list cannot represent (a control character in a
/// text, for example): keeping what others have put there matters more. Null if the platform has no
/// identifiers to give.
[[nodiscard]] Text installationIdentifier();

/// The installation identifier, kept in a record's cache: it is asked for only if `cache` is null.
/// "" if there is none.
[[nodiscard]] std::string cachedIdentifier(Text& cache);

}  // namespace wenlolib

#endif
