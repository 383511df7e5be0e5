/// The fixtures of the tests that run the macOS port on stub services.
#ifndef WENLOLIB_TESTS_PLATFORM_APPLE_STUBTEST_H
#define WENLOLIB_TESTS_PLATFORM_APPLE_STUBTEST_H

#include <gtest/gtest.h>

#include "apple_stubs/bodies/Stubs.h"

namespace wenlolib::tests {

/// Every test begins in a new world. These tests also hold on Apple's own Core Foundation: see
/// scripts/check-corefoundation.
class PortTest : public testing::Test {
 protected:
  PortTest() {
    stubs::reset();
    stubs::useTimeZone(0);
    stubs::useLocaleSetting(std::nullopt);
  }

  stubs::World& world = stubs::world();
};

/// For what only a stub can do: refuse, and count objects. A test fails if it leaves one behind.
class StubTest : public PortTest {
 protected:
  StubTest() : before_(stubs::liveObjects()) {}
  ~StubTest() override { EXPECT_EQ(stubs::liveObjects(), before_) << "objects were left behind"; }

  /// Runs `work` once for each call that it makes, and refuses that call. `work` is given the
  /// call's name. Before each run the world is as it is now. Answers how many runs there were.
  template <class Work>
  std::size_t refusingEachCall(Work&& work) {
    world.calls.clear();
    const stubs::World start = world;
    std::size_t runs = 0;
    work("");
    const std::vector<std::string> calls = world.calls;
    for (; runs < calls.size(); ++runs) {
      world = start;
      world.refusedCall = runs;
      SCOPED_TRACE("refused: " + calls[runs]);
      work(calls[runs]);
      EXPECT_EQ(stubs::liveObjects(), before_);
    }
    return runs;
  }

 private:
  long before_;
};

}  // namespace wenlolib::tests

#endif
