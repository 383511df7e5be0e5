/// A file system in a map.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYFILES_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYFILES_H

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Files.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

/// Paths are compared as plain text; "/" is there from the start.
class MemoryFiles : public platform::Files {
 public:
  enum class Type { folder, file, danglingLink };
  struct Entry {
    Type type = Type::file;
    std::uint32_t mode = 0;
    std::string bytes;
    friend bool operator==(const Entry&, const Entry&) = default;
  };
  using Entries = std::map<std::string, Entry>;

  explicit MemoryFiles(Recorder recorder);

  // For tests, to set up and to look at files. None of this is in the journal.
  void addFolder(const std::string& path, std::uint32_t mode = 0755);  // with missing parents
  void addFile(const std::string& path, std::string bytes, std::uint32_t mode = 0644);
  void addDanglingLink(const std::string& path);
  void remove(const std::string& path);
  [[nodiscard]] std::optional<Entry> at(const std::string& path) const;
  [[nodiscard]] Entries all() const;
  /// The bytes of a file; "" if there is no such file.
  [[nodiscard]] std::string bytesAt(const std::string& path) const;

  platform::Kind kindAt(const std::string& path) override;
  bool isExecutable(const std::string& path) override;
  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode, platform::Publication publication) override;
  bool setPermissions(const std::string& path, std::uint32_t mode) override;
  platform::Reason createFolder(const std::string& path, std::uint32_t mode) override;

 private:
  [[nodiscard]] const Entry* find(const std::string& path) const;
  [[nodiscard]] bool isFolder(const std::string& path) const;

  Recorder recorder_;
  mutable std::mutex mutex_;
  Entries entries_;
};

/// The folder that holds `path`; "" for a path without a "/".
[[nodiscard]] std::string parentOf(const std::string& path);

}  // namespace wenlolib::tests

#endif
