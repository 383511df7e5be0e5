/// Fixture of the tests that drive the macOS port through stub services.
#ifndef WENLOLIB_TESTS_PLATFORM_APPLE_STUBTEST_H
#define WENLOLIB_TESTS_PLATFORM_APPLE_STUBTEST_H

#include <gtest/gtest.h>

#include "apple_stubs/bodies/Stubs.h"

namespace wenlolib::tests {

/// Every test begins in a new world, and fails where it leaves an object behind.
class StubTest : public testing::Test {
 protected:
  StubTest() : before_(stubs::liveObjects()) { stubs::reset(); }
  ~StubTest() override { EXPECT_EQ(stubs::liveObjects(), before_) << "objects left over"; }

  stubs::World& world = stubs::world();

  /// Runs `work` once for each of the calls it makes, which is then refused. The work is given the
  /// name of that call; before each run the world is as it is now. Answers how many runs there
  /// were.
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
