/// Puts a property list together while it is read, whichever form it is read from.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTBUILDER_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTBUILDER_H

#include <cstddef>
#include <cstdint>
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
  /// `bytes` is the size of the file.
  explicit PropertyListBuilder(std::size_t bytes) : referencesLeft_(bytes) {}

  [[nodiscard]] bool openDictionary();
  [[nodiscard]] bool openArray();
  [[nodiscard]] bool close();
  [[nodiscard]] bool key(std::string_view key);
  /// A value that is neither array nor dictionary.
  [[nodiscard]] bool add(Value value);
  /// A UID, as the dictionary that it is in XML: three nodes, for one reference in the file.
  [[nodiscard]] bool addUid(std::uint64_t number);

  /// The finished list; nothing while it is incomplete.
  [[nodiscard]] std::optional<Dictionary> finish() &&;

 private:
  struct Level {
    std::variant<Dictionary, Value::Array> held;
    std::optional<std::string> key;
  };

  [[nodiscard]] bool open(Level level);
  [[nodiscard]] bool place(Value value);
  [[nodiscard]] bool charge(std::size_t contentBytes, std::size_t nodes = 1);

  std::vector<Level> levels_;
  std::optional<Dictionary> root_;
  std::size_t referencesLeft_;
  std::size_t nodesLeft_ = propertyListBounds.nodes;
  std::size_t contentBytesLeft_ = propertyListBounds.contentBytes;
};

}  // namespace wenlolib::platform::gnulinux

#endif
