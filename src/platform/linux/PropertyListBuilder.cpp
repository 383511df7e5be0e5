#include "platform/linux/PropertyListBuilder.h"

#include <utility>

#include "platform/linux/PropertyListNumbers.h"

namespace wenlolib::platform::gnulinux {
namespace {

std::size_t contentSize(const Value& value) {
  if (const auto* text = value.text()) return text->size();
  if (const auto* data = value.data()) return data->size();
  return 0;
}

}  // namespace

bool PropertyListBuilder::openDictionary() {
  return open(Level{Dictionary(), std::nullopt});
}

bool PropertyListBuilder::openArray() {
  return !levels_.empty() && open(Level{Value::Array(), std::nullopt});
}

bool PropertyListBuilder::open(Level level) {
  if (levels_.empty() && root_) return false;
  if (levels_.size() == propertyListBounds.levels || !charge(0)) return false;
  levels_.push_back(std::move(level));
  return true;
}

bool PropertyListBuilder::close() {
  if (levels_.empty() || levels_.back().key) return false;
  Level closed = std::move(levels_.back());
  levels_.pop_back();
  if (auto* array = std::get_if<Value::Array>(&closed.held)) return place(std::move(*array));
  auto& dictionary = std::get<Dictionary>(closed.held);
  if (!levels_.empty()) return place(std::move(dictionary));
  root_ = std::move(dictionary);
  return true;
}

bool PropertyListBuilder::key(std::string_view key) {
  if (levels_.empty() || levels_.back().key) return false;
  if (!std::holds_alternative<Dictionary>(levels_.back().held) || !charge(key.size())) return false;
  levels_.back().key.emplace(key);
  return true;
}

bool PropertyListBuilder::add(Value value) {
  return !levels_.empty() && charge(contentSize(value)) && place(std::move(value));
}

bool PropertyListBuilder::addUid(std::uint64_t number) {
  constexpr std::string_view name = "CF$UID";
  if (levels_.empty() || levels_.size() == propertyListBounds.levels) return false;
  return charge(name.size(), 3) && place(Dictionary{{std::string(name), naturalValue(number)}});
}

bool PropertyListBuilder::place(Value value) {
  Level& level = levels_.back();
  if (auto* array = std::get_if<Value::Array>(&level.held)) {
    array->push_back(std::move(value));
    return true;
  }
  if (!level.key) return false;
  // Where a key stands twice, the later value is the one that counts.
  std::get<Dictionary>(level.held).insert_or_assign(std::move(*level.key), std::move(value));
  level.key.reset();
  return true;
}

bool PropertyListBuilder::charge(std::size_t contentBytes, std::size_t nodes) {
  if (referencesLeft_ == 0 || nodesLeft_ < nodes || contentBytes > contentBytesLeft_) return false;
  --referencesLeft_;
  nodesLeft_ -= nodes;
  contentBytesLeft_ -= contentBytes;
  return true;
}

std::optional<Dictionary> PropertyListBuilder::finish() && {
  return levels_.empty() ? std::move(root_) : std::nullopt;
}

}  // namespace wenlolib::platform::gnulinux
