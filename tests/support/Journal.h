/// The calls of a platform, in order.
#ifndef WENLOLIB_TESTS_SUPPORT_JOURNAL_H
#define WENLOLIB_TESTS_SUPPORT_JOURNAL_H

#include <algorithm>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "support/FailingAllocations.h"

namespace wenlolib::tests {

/// One readable line for each call, such as "files.kindAt /tmp/a": the service, the operation, then
/// its arguments. Any thread may note calls.
class Journal {
 public:
  using Lines = std::vector<std::string>;

  void note(std::string_view kind, std::string_view detail) {
    const AllocationsSpared spared;  // the journal must not change which allocations fail
    std::string line(kind);
    if (!detail.empty()) line.append(" ").append(detail);
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
  }

  [[nodiscard]] Lines lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
  }

  /// The lines that begin with `beginning`.
  [[nodiscard]] Lines linesOf(std::string_view beginning) const {
    Lines found = lines();
    std::erase_if(found, [&](const std::string& line) { return !line.starts_with(beginning); });
    return found;
  }

  [[nodiscard]] std::size_t count(std::string_view beginning) const {
    return linesOf(beginning).size();
  }

  void clear() {
    const std::lock_guard lock(mutex_);
    lines_.clear();
  }

 private:
  mutable std::mutex mutex_;
  Lines lines_;
};

}  // namespace wenlolib::tests

#endif
