/// Makes a call's allocations fail, one after the other.
#ifndef WENLOLIB_TESTS_PLIST_FAILURESTHROWN_H
#define WENLOLIB_TESTS_PLIST_FAILURESTHROWN_H

#include <gtest/gtest.h>

#include <new>

#include "support/FailingAllocations.h"

namespace wenlolib::tests {

/// Repeats `call` with each of its allocations failing in turn, which must throw, and then without
/// a failure, which must give `expected`. Answers how many allocations failed.
template <class Call, class Expected>
long failuresThrown(const Call& call, const Expected& expected) {
  for (long failures = 0;; ++failures) {
    Expected answer{};
    bool thrown = false;
    FailingAllocations failing(failures + 1);
    try {
      answer = call();
    } catch (const std::bad_alloc&) {
      thrown = true;
    }
    failing.stop();
    EXPECT_EQ(thrown, failing.struck()) << failures + 1;
    EXPECT_EQ(answer, thrown ? Expected{} : expected);
    if (!failing.struck()) return failures;
  }
}

}  // namespace wenlolib::tests

#endif
