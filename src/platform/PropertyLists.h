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
  whole,     // a dictionary
  partial,   // a dictionary, but for values that cannot be carried: they were left out
  notRead,   // no file, or none that can be read: see the reason
  tooLarge,  // beyond the bounds of the port
  empty,     // no bytes
  oldForm,   // neither the XML form nor the binary one: text in braces, as long ago, or none at all
  damaged,   // no property list
  otherRoot,  // a property list whose root is no dictionary
};

/// The place in a file at which it was given up, and what is wrong there; of `damaged`, `tooLarge`.
struct ListFault {
  std::string_view what;  // a few words; they last
  std::size_t line = 0;   // counted from 1; 0 in the binary form
  std::size_t byte = 0;   // counted from 0
};

struct ListReading {
  ListState state = ListState::notRead;
  std::optional<Dictionary> dictionary;  // of `whole` and `partial` alone
  ListFault fault;
  Reason reason;  // of `notRead`
};

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;

  /// Reads the file at `path`, in XML or binary form. Throws where the platform could not answer
  /// (for want of memory or descriptors, say).
  virtual ListReading read(const std::string& path) = 0;

  /// `dictionary` as an XML property list that `read` gives back as it was (dates in whole
  /// seconds). Null when it holds a value that the form cannot carry.
  virtual Text asXml(const Dictionary& dictionary) = 0;
};

// --- Bundles ---

class Bundles {
 public:
  virtual ~Bundles() = default;

  /// The information dictionary of the bundle at `path`, empty where the bundle has none that can
  /// be read. Nothing when there is no bundle at `path`.
  virtual std::optional<Dictionary> informationAt(const std::string& path) = 0;

  /// The same for the bundle that this library was loaded from, wherever that is.
  virtual std::optional<Dictionary> ownInformation() = 0;
};

}  // namespace wenlolib::platform

#endif
