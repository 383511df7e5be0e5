#include "support/MemoryPropertyLists.h"

#include <cerrno>
#include "base/Integer.h"

namespace wenlolib::tests {

using platform::ListState;

std::string MemoryPropertyLists::token(const Dictionary& dictionary) {
  const std::lock_guard lock(mutex_);
  std::string text =
      "<plist number=\"" + decimal(static_cast<std::int64_t>(dictionaries_.size())) + "\"/>";
  dictionaries_.emplace(text, dictionary);
  return text;
}

void MemoryPropertyLists::add(const std::string& path, const Dictionary& dictionary,
                              std::uint32_t mode) {
  files_.addFile(path, token(dictionary), mode);
}

std::optional<Dictionary> MemoryPropertyLists::at(const std::string& path) const {
  const auto file = files_.at(path);
  if (!file || file->type != MemoryFiles::Type::file) return std::nullopt;
  const std::lock_guard lock(mutex_);
  const auto found = dictionaries_.find(file->bytes);
  if (found == dictionaries_.end()) return std::nullopt;
  return found->second;
}

platform::ListReading MemoryPropertyLists::read(const std::string& path) {
  platform::ListReading reading;
  reading.reason = {platform::Step::openFile, EACCES};
  if (recorder_.fails("propertyLists.read", path)) return reading;
  reading.dictionary = at(path);
  if (reading.dictionary) reading.state = partial ? ListState::partial : ListState::whole;
  return reading;
}

Text MemoryPropertyLists::asXml(const Dictionary& dictionary) {
  if (recorder_.fails("propertyLists.asXml")) return std::nullopt;
  return token(dictionary);
}

}  // namespace wenlolib::tests
