#include "toolkit/Preferences.h"

#include "base/Utf8.h"
#include "platform/Platform.h"
#include "toolkit/Folders.h"
#include "toolkit/SharedNames.h"

namespace wenlolib {

std::optional<Dictionary> hostPreferences() {
  const platform::Platform& platform = platform::current();
  const Text path = configurationPath(preferenceFile);
  if (!path || platform.files->kindAt(*path) != platform::Kind::other) return std::nullopt;
  return platform.propertyLists->read(*path).dictionary;
}

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
