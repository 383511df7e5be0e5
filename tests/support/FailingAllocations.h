/// Makes memory run out where a test wants it to.
///
/// This works only in a program that is linked with FailingAllocations.cpp, which replaces the
/// global operator new. Elsewhere nothing here has any effect.
#ifndef WENLOLIB_TESTS_SUPPORT_FAILINGALLOCATIONS_H
#define WENLOLIB_TESTS_SUPPORT_FAILINGALLOCATIONS_H

#include <cstddef>

namespace wenlolib::tests {

/// The state of one thread. Plain data, so that an allocation may look at it at any time.
struct AllocationState {
  bool counting = false;
  bool onwards = false;     // all allocations from `failing` on fail, not just that one
  long failing = 0;         // 0: none fails
  long seen = 0;            // allocations since the scope began
  std::size_t largest = 0;  // the largest size asked for since then
  std::size_t bytes = 0;    // all that was asked for since then
  int spared = 0;           // above zero: allocations are neither counted nor failed
};
inline thread_local AllocationState allocationState;

/// While an object lives, the k-th allocation of this thread fails, counted from 1: the plain
/// operator new throws std::bad_alloc, the nothrow one answers null. Scopes do not nest.
class FailingAllocations {
 public:
  enum class Span { once, onwards };

  explicit FailingAllocations(long k, Span span = Span::once) {
    allocationState = {true, span == Span::onwards, k, 0, 0, 0, 0};
  }
  ~FailingAllocations() { stop(); }
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  /// Ends the scope early; what was seen can still be read.
  void stop() { allocationState.counting = false; }

  [[nodiscard]] bool struck() const {
    return allocationState.failing > 0 && allocationState.seen >= allocationState.failing;
  }
  [[nodiscard]] long seen() const { return allocationState.seen; }
  [[nodiscard]] std::size_t largest() const { return allocationState.largest; }
  [[nodiscard]] std::size_t bytes() const { return allocationState.bytes; }
};

/// Counts allocations; none fails.
class CountedAllocations : public FailingAllocations {
 public:
  CountedAllocations() : FailingAllocations(0) {}
};

/// While an object lives, the allocations of this thread succeed and are not counted. For
/// allocations of the test doubles themselves.
class AllocationsSpared {
 public:
  AllocationsSpared() { ++allocationState.spared; }
  ~AllocationsSpared() { --allocationState.spared; }
  AllocationsSpared(const AllocationsSpared&) = delete;
  AllocationsSpared& operator=(const AllocationsSpared&) = delete;
};

}  // namespace wenlolib::tests

#endif
