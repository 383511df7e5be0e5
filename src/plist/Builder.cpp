#include "plist/Builder.h"

#include <utility>

#include "plist/Scalars.h"

namespace wenlolib::plist {
namespace {

using platform::ListFault;
using platform::ListReading;
using platform::ListState;

std::size_t contentSize(const Value& value) {
  if (const auto* text = value.text()) return text->size();
  if (const auto* data = value.data()) return data->size();
  return 0;
}

}  // namespace

bool Builder::openDictionary() {
  return open(Level{Dictionary(), {}});
}

bool Builder::openArray() {
  return levels_.empty() ? refuseRoot() : open(Level{Value::Array(), {}});
}

bool Builder::open(Level level) {
  if (levels_.empty() && root_) return refuseRoot();
  if (levels_.size() == bounds.levels) return refuseDepth();
  if (!charge(0)) return false;
  levels_.push_back(std::move(level));
  return true;
}

bool Builder::close() {
  if (levels_.empty() || levels_.back().key) {
    return refuse(ListState::damaged, "a key has no value");
  }
  Level closed = std::move(levels_.back());
  levels_.pop_back();
  if (auto* array = std::get_if<Value::Array>(&closed.held)) return place(std::move(*array));
  auto& dictionary = std::get<Dictionary>(closed.held);
  if (!levels_.empty()) return place(std::move(dictionary));
  root_ = std::move(dictionary);
  return true;
}

bool Builder::key(std::optional<std::string> key) {
  if (levels_.empty() || levels_.back().key ||
      !std::holds_alternative<Dictionary>(levels_.back().held)) {
    return refuse(ListState::damaged, "a key is out of place");
  }
  levels_.back().isKeyLost = !key;
  if (!key) state_ = ListState::partial;
  levels_.back().key = std::move(key).value_or("");
  return charge(levels_.back().key->size());
}

bool Builder::add(std::optional<Value> value) {
  if (levels_.empty()) return refuseRoot();
  if (!value) return leaveOut();
  return charge(contentSize(*value)) && place(std::move(*value));
}

bool Builder::addUid(std::uint64_t number) {
  constexpr std::string_view name = "CF$UID";
  if (levels_.empty()) return refuseRoot();
  if (levels_.size() == bounds.levels) return refuseDepth();
  return charge(name.size(), 3) && place(Dictionary{{std::string(name), naturalValue(number)}});
}

/// Leaves out a value, with its key if it has one.
bool Builder::leaveOut() {
  Level& level = levels_.back();
  const bool isEntry = std::holds_alternative<Dictionary>(level.held);
  if (isEntry && !level.key) return refuse(ListState::damaged, "a value has no key");
  level.key.reset();
  state_ = ListState::partial;
  return charge(0);
}

bool Builder::place(Value value) {
  Level& level = levels_.back();
  if (auto* array = std::get_if<Value::Array>(&level.held)) {
    array->push_back(std::move(value));
    return true;
  }
  if (!level.key) return refuse(ListState::damaged, "a value has no key");
  std::string key = std::move(*level.key);
  level.key.reset();
  if (level.isKeyLost) return true;
  // If a key occurs twice, the later value counts.
  std::get<Dictionary>(level.held).insert_or_assign(std::move(key), std::move(value));
  return true;
}

bool Builder::charge(std::size_t contentBytes, std::size_t nodes) {
  if (referencesLeft_ == 0 || nodesLeft_ < nodes || contentBytes > contentBytesLeft_) {
    return refuse(ListState::tooLarge, "it holds too many values, or too large ones");
  }
  --referencesLeft_;
  nodesLeft_ -= nodes;
  contentBytesLeft_ -= contentBytes;
  return true;
}

bool Builder::refuse(ListState state, std::string_view what) {
  state_ = state;
  refusal_ = what;
  return false;
}

bool Builder::refuseDepth() {
  return refuse(ListState::tooLarge, "arrays and dictionaries are nested too deeply");
}

bool Builder::refuseRoot() {
  if (root_) return refuse(ListState::damaged, "something follows the root");
  return refuse(ListState::otherRoot, "its root is not a dictionary");
}

ListReading Builder::finish(ListFault fault) && {
  ListReading reading;
  const bool isRefused = !refusal_.empty();
  if (isRefused) fault.what = refusal_;
  if (isRefused || !fault.what.empty() || !root_ || !levels_.empty()) {
    if (fault.what.empty()) fault.what = "it holds no value";
    reading.state = isRefused ? state_ : ListState::damaged;
    reading.fault = fault;
    return reading;
  }
  reading.state = state_;
  reading.dictionary = std::move(root_);
  return reading;
}

}  // namespace wenlolib::plist
