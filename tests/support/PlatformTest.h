/// Fixtures for tests that run on an in-memory platform.
#ifndef WENLOLIB_TESTS_SUPPORT_PLATFORMTEST_H
#define WENLOLIB_TESTS_SUPPORT_PLATFORMTEST_H

#include <gtest/gtest.h>

#include "support/HostInstallation.h"
#include "support/MemoryPlatform.h"

namespace wenlolib::tests {

/// An empty platform replaces the native one while a test runs.
class PlatformTest : public testing::Test {
 protected:
  MemoryPlatform world;

 private:
  platform::Substitute substitute_{world.services};
};

/// The same platform with a host that is allowed to record.
class InstalledTest : public PlatformTest {
 protected:
  InstalledTest() { install(world); }
};

}  // namespace wenlolib::tests

#endif
