/// Property lists, in files and in bundles.
#ifndef WENLOLIB_PLATFORM_PROPERTYLISTS_H
#define WENLOLIB_PLATFORM_PROPERTYLISTS_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Reason.h"
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::platform {

// --- Files ---

/// What a file turned out to be.
enum class ListState : std::uint8_t {
  whole,      // a dictionary
  partial,    // a dictionary; values that cannot be represented were left out
  notRead,    // there is no file, or it cannot be read: see the reason
  tooLarge,   // beyond the bounds of the port
  empty,      // no bytes
  oldForm,    // neither XML nor binary: the old text form in braces, or no property list at all
  damaged,    // not a valid property list
  otherRoot,  // a property list whose root is not a dictionary
};

/// Where reading a file was given up, and what is wrong there. For `damaged` and `tooLarge`.
struct ListFault {
  std::string_view what;  // a few words; valid for good
  std::size_t line = 0;   // counted from 1; 0 in the binary form
  std::size_t byte = 0;   // counted from 0
};

struct ListReading {
  ListState state = ListState::notRead;
  std::optional<Dictionary> dictionary;  // for `whole` and `partial` only
  ListFault fault;
  Reason reason;  // for `notRead`
};

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;

  /// Reads the file at `path`, in XML or binary form. Throws if the platform cannot answer (for
  /// lack of memory or descriptors, for example).
  virtual ListReading read(const std::string& path) = 0;

  /// `dictionary` as an XML property list that `read` turns back into the same dictionary (dates in
  /// whole seconds). Null if it holds a value that the form cannot represent.
  virtual Text asXml(const Dictionary& dictionary) = 0;
};

// --- Bundles ---

class Bundles {
 public:
  virtual ~Bundles() = default;

  /// The information dictionary of the bundle at `path`, empty if the bundle has none that can be
  /// read. Nothing if there is no bundle at `path`.
  virtual std::optional<Dictionary> informationAt(const std::string& path) = 0;

  /// The same for the bundle that this library was loaded from, wherever that is.
  virtual std::optional<Dictionary> ownInformation() = 0;
};

}  // namespace wenlolib::platform

#endif
