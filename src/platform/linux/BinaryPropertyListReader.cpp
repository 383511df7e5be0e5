#include "platform/linux/BinaryPropertyListReader.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/linux/BinaryPropertyListObjects.h"
#include "platform/linux/BinaryPropertyListScalars.h"
#include "platform/linux/PropertyListBuilder.h"

namespace wenlolib::platform::gnulinux {
namespace {

using Type = BinaryObject::Type;

/// Walks the objects from the root down. An object is read anew at each reference to it; where
/// references run in a circle, the walk ends at the bound for levels.
class Walk {
 public:
  Walk(const BinaryObjects& objects, std::size_t bytes) : objects_(objects), builder_(bytes) {}

  std::optional<Dictionary> run();

 private:
  /// An array or dictionary whose elements are being read.
  struct Open {
    BinaryObject object;
    std::size_t next = 0;
  };

  [[nodiscard]] bool step();
  [[nodiscard]] bool enter(std::uint64_t number);
  [[nodiscard]] bool key(std::uint64_t number);

  const BinaryObjects& objects_;
  PropertyListBuilder builder_;
  std::vector<Open> open_;
};

std::optional<Dictionary> Walk::run() {
  const auto root = objects_.object(objects_.root());
  if (!root || root->type != Type::dictionary || !enter(objects_.root())) return std::nullopt;
  while (!open_.empty()) {
    if (!step()) return std::nullopt;
  }
  return std::move(builder_).finish();
}

/// The next element of the innermost array or dictionary, or its end.
bool Walk::step() {
  Open& innermost = open_.back();
  const BinaryObject object = innermost.object;
  if (innermost.next == object.count) {
    open_.pop_back();
    return builder_.close();
  }
  const std::size_t index = innermost.next++;
  if (object.type == Type::array) return enter(objects_.reference(object.content, index));
  return key(objects_.reference(object.content, index)) &&
         enter(objects_.reference(object.content, object.count + index));
}

bool Walk::enter(std::uint64_t number) {
  const auto object = objects_.object(number);
  if (!object) return false;
  if (object->type == Type::uid) {
    return object->content.size() <= 8 && builder_.addUid(bigEndian(object->content));
  }
  if (object->type != Type::array && object->type != Type::dictionary) {
    auto value = binaryScalar(*object);
    return value && builder_.add(std::move(*value));
  }
  open_.push_back(Open{*object});
  return object->type == Type::array ? builder_.openArray() : builder_.openDictionary();
}

bool Walk::key(std::uint64_t number) {
  const auto object = objects_.object(number);
  const auto text = object ? binaryText(*object) : std::nullopt;
  return text && builder_.key(*text);
}

}  // namespace

std::optional<Dictionary> readBinaryPropertyList(std::string_view bytes) {
  const auto objects = BinaryObjects::in(bytes);
  return objects ? Walk(*objects, bytes.size()).run() : std::nullopt;
}

}  // namespace wenlolib::platform::gnulinux
