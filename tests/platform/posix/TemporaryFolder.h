/// Real files that are removed at the end of the test.
#ifndef WENLOLIB_TESTS_PLATFORM_POSIX_TEMPORARYFOLDER_H
#define WENLOLIB_TESTS_PLATFORM_POSIX_TEMPORARYFOLDER_H

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace wenlolib::tests {

/// A new folder below the system's temporary one. Its path has no links in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    path_ = std::filesystem::canonical(std::filesystem::temp_directory_path()) / "wenlolib.XXXXXX";
    if (::mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary folder");
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// All bytes of a file; "(unreadable)" if it cannot be read.
inline std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return "(unreadable)";
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

/// The names in a folder, hidden ones too, sorted.
inline std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename());
  }
  std::ranges::sort(names);
  return names;
}

/// The permissions at a path, following links; all bits are set if nothing is there.
inline mode_t modeOf(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 ? status.st_mode & mode_t{07777} : ~mode_t{0};
}

/// Sets the process's file-creation mask for a scope.
class Mask {
 public:
  explicit Mask(mode_t mask) : previous_(::umask(mask)) {}
  ~Mask() { ::umask(previous_); }
  Mask(const Mask&) = delete;
  Mask& operator=(const Mask&) = delete;

  [[nodiscard]] mode_t previous() const { return previous_; }

 private:
  mode_t previous_;
};

}  // namespace wenlolib::tests

#endif
