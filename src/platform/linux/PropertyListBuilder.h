/// Puts a property list together while it is read, whichever form it is read from.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTBUILDER_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTBUILDER_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/Value.h"
#include "platform/linux/PropertyListBounds.h"

namespace wenlolib::platform::gnulinux {

/// Every step answers false when it is out of place (a value without a key, a root that is no
/// dictionary) or beyond the bounds; the list is then refused, and the builder of no more use. The
/// levels stand in a vector, so that no nesting of the input becomes a nesting of calls.
class PropertyListBuilder {
 public:
  [[nodiscard]] bool openDictionary();
  [[nodiscard]] bool openArray();
  [[nodiscard]] bool close();
  [[nodiscard]] bool key(std::string_view key);
  /// A value that is neither array nor dictionary.
  [[nodiscard]] bool add(Value value);

  /// The finished list; nothing while it is incomplete.
  [[nodiscard]] std::optional<Dictionary> finish() &&;

 private:
  struct Level {
    std::variant<Dictionary, Value::Array> held;
    std::optional<std::string> key;
  };

  [[nodiscard]] bool open(Level level);
  [[nodiscard]] bool place(Value value);
  [[nodiscard]] bool charge(std::size_t contentBytes);

  std::vector<Level> levels_;
  std::optional<Dictionary> root_;
  std::size_t nodesLeft_ = propertyListBounds.nodes;
  std::size_t contentBytesLeft_ = propertyListBounds.contentBytes;
};

}  // namespace wenlolib::platform::gnulinux

#endif
