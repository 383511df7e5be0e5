/// Fixtures of tests that run on an in-memory platform.
#ifndef WENLOLIB_TESTS_SUPPORT_PLATFORMTEST_H
#define WENLOLIB_TESTS_SUPPORT_PLATFORMTEST_H

#include <gtest/gtest.h>

#include "support/HostInstallation.h"
#include "support/MemoryPlatform.h"

namespace wenlolib::tests {

/// A bare platform stands in for the native one while a test runs.
class PlatformTest : public testing::Test {
 protected:
  MemoryPlatform world;

 private:
  platform::Substitute substitute_{world.services};
};

/// The same with a host on it that may record.
class InstalledTest : public PlatformTest {
 protected:
  InstalledTest() { install(world); }
};

}  // namespace wenlolib::tests

#endif
