/// Property lists in the in-memory file system.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYPROPERTYLISTS_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYPROPERTYLISTS_H

#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "platform/PropertyLists.h"
#include "support/MemoryFiles.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

/// A dictionary's text form is a token under which the dictionary is remembered. A file that holds
/// the token is read as the dictionary. A file that holds anything else is not a property list.
class MemoryPropertyLists : public platform::PropertyLists {
 public:
  MemoryPropertyLists(Recorder recorder, MemoryFiles& files) : recorder_(recorder), files_(files) {}

  /// Makes a file at `path` that is read as `dictionary`.
  void add(const std::string& path, const Dictionary& dictionary, std::uint32_t mode = 0644);

  /// If set, every file counts as one with values that were left out.
  bool partial = false;

  /// What the file at `path` is read as. Not in the journal.
  [[nodiscard]] std::optional<Dictionary> at(const std::string& path) const;

  platform::ListReading read(const std::string& path) override;
  Text asXml(const Dictionary& dictionary) override;

 private:
  std::string token(const Dictionary& dictionary);

  Recorder recorder_;
  MemoryFiles& files_;
  mutable std::mutex mutex_;
  std::map<std::string, Dictionary> dictionaries_;  // by token
};

}  // namespace wenlolib::tests

#endif
