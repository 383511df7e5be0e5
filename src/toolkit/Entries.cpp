#include "toolkit/Entries.h"

#include "base/Utf8.h"

namespace wenlolib {

const Value* entry(const std::optional<Dictionary>& dictionary, std::string_view key) {
  if (!dictionary) return nullptr;
  const auto found = dictionary->find(key);
  return found == dictionary->end() ? nullptr : &found->second;
}

Text textEntry(const std::optional<Dictionary>& dictionary, std::string_view key) {
  const Value* value = entry(dictionary, key);
  if (value == nullptr || value->text() == nullptr || !isUtf8(*value->text())) return std::nullopt;
  return *value->text();
}

}  // namespace wenlolib
