/// Property-list files whose root is a dictionary.
#ifndef WENLOLIB_PLATFORM_PROPERTYLISTS_H
#define WENLOLIB_PLATFORM_PROPERTYLISTS_H

#include <optional>
#include <string>

#include "base/Text.h"
#include "base/Value.h"

namespace wenlolib::platform {

class PropertyLists {
 public:
  virtual ~PropertyLists() = default;

  /// The dictionary in the file at `path`, in XML or binary form. Nothing when the file is missing,
  /// unreadable, not a property list, beyond the bounds of the port, or no dictionary at its root.
  /// Throws where the platform is short of memory or descriptors, which is no answer.
  virtual std::optional<Dictionary> read(const std::string& path) = 0;

  /// `dictionary` as an XML property list that `read` gives back as it was (dates in whole
  /// seconds). Null when it holds a value that the form cannot carry.
  virtual Text asXml(const Dictionary& dictionary) = 0;
};

}  // namespace wenlolib::platform

#endif
