/// Plans which calls of a platform fail.
#ifndef WENLOLIB_TESTS_SUPPORT_FAULTPLAN_H
#define WENLOLIB_TESTS_SUPPORT_FAULTPLAN_H

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "support/FailingAllocations.h"

namespace wenlolib::tests {

/// Calls are named as in the journal: "cipher.rc4", "files.writeAtomically". A failing call gives
/// the failing answer of its operation: null, false, nothing, `Outcome::failed`.
class FaultPlan {
 public:
  /// The n-th call from now on fails, counted from 1.
  void fail(std::string_view kind, int nth) {
    const std::lock_guard lock(mutex_);
    const std::string name(kind);
    planned_[name].insert(calls_[name] + nth);
  }

  /// Every call fails until `forgive`.
  void failAlways(std::string_view kind) {
    const std::lock_guard lock(mutex_);
    always_.insert(std::string(kind));
  }

  void forgive() {
    const std::lock_guard lock(mutex_);
    planned_.clear();
    always_.clear();
  }

  /// Counts one call. True if it must fail.
  [[nodiscard]] bool strikes(std::string_view kind) {
    const AllocationsSpared spared;
    const std::lock_guard lock(mutex_);
    const std::string name(kind);
    const int call = ++calls_[name];
    const auto plan = planned_.find(name);
    return always_.contains(name) || (plan != planned_.end() && plan->second.contains(call));
  }

 private:
  std::mutex mutex_;
  std::map<std::string, int> calls_;
  std::map<std::string, std::set<int>> planned_;
  std::set<std::string> always_;
};

}  // namespace wenlolib::tests

#endif
