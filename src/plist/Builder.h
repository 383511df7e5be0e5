/// Puts a property list together while it is read, whichever form it is read from.
#ifndef WENLOLIB_PLIST_BUILDER_H
#define WENLOLIB_PLIST_BUILDER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "plist/PropertyList.h"
#include "wenlolib/Value.h"

namespace wenlolib::plist {

/// Every step returns false if it is out of place (a value without a key, a root that is not a
/// dictionary) or beyond the bounds. The list is then refused, and only `finish` may be called. The
/// levels are kept in a vector, so that deep nesting in the input does not become deep recursion.
class Builder {
 public:
  /// `bytes` is the size of the file.
  explicit Builder(std::size_t bytes) : referencesLeft_(bytes) {}

  [[nodiscard]] bool openDictionary();
  [[nodiscard]] bool openArray();
  [[nodiscard]] bool close();
  /// Nothing for a key that cannot be represented; its value is left out too.
  [[nodiscard]] bool key(std::optional<std::string> key);
  /// A value that is neither array nor dictionary; nothing for one that cannot be represented.
  [[nodiscard]] bool add(std::optional<Value> value);
  /// A UID, as the dictionary that stands for it in XML: three nodes, for one reference in the
  /// file.
  [[nodiscard]] bool addUid(std::uint64_t number);

  /// The finished list. `fault` says where the input ended or was given up. It is reported if the
  /// list is incomplete; if the builder has refused the list, `what` is the builder's own reason.
  [[nodiscard]] platform::ListReading finish(platform::ListFault fault) &&;

 private:
  struct Level {
    std::variant<Dictionary, Value::Array> held;
    std::optional<std::string> key;
    bool isKeyLost = false;  // the key cannot be represented
  };

  [[nodiscard]] bool open(Level level);
  [[nodiscard]] bool place(Value value);
  [[nodiscard]] bool leaveOut();
  [[nodiscard]] bool charge(std::size_t contentBytes, std::size_t nodes = 1);
  [[nodiscard]] bool refuse(platform::ListState state, std::string_view what);
  [[nodiscard]] bool refuseDepth();
  [[nodiscard]] bool refuseRoot();

  std::vector<Level> levels_;
  std::optional<Dictionary> root_;
  platform::ListState state_ = platform::ListState::whole;
  std::string_view refusal_;
  std::size_t referencesLeft_;
  std::size_t nodesLeft_ = bounds.nodes;
  std::size_t contentBytesLeft_ = bounds.contentBytes;
};

}  // namespace wenlolib::plist

#endif
