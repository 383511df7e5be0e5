/// Calls in which one allocation after the other fails.
#ifndef WENLOLIB_TESTS_PLIST_FAILURESTHROWN_H
#define WENLOLIB_TESTS_PLIST_FAILURESTHROWN_H

#include <gtest/gtest.h>

#include <new>

#include "support/FailingAllocations.h"

namespace wenlolib::tests {

/// Repeats `call` with each of its allocations failing, which has to be thrown, and then without a
/// failure, which has to give `expected`. Answers how many there were.
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
