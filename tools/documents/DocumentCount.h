/// How many documents there are, for showing progress.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTCOUNT_H
#define WENLOLIB_TOOLS_DOCUMENTS_DOCUMENTCOUNT_H

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace wenlolib::tools {

/// Walks through files and folders on a thread of its own, ahead of the walk that reads, and
/// counts. Files that come or go in the meantime make the number an estimate.
class DocumentCount {
 public:
  /// Throws std::system_error if no thread can be started.
  explicit DocumentCount(std::vector<std::string> paths);
  ~DocumentCount();
  DocumentCount(const DocumentCount&) = delete;
  DocumentCount& operator=(const DocumentCount&) = delete;

  /// Nothing while it is still counting.
  [[nodiscard]] std::optional<std::uint64_t> total() const;

 private:
  void count(std::vector<std::string> paths);

  std::atomic<bool> stopped_ = false;
  std::atomic<bool> done_ = false;
  std::uint64_t documents_ = 0;  // the thread's own until it is done
  std::thread thread_;
};

}  // namespace wenlolib::tools

#endif
