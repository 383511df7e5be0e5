#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

TEST(Substitute, TheNativePlatformIsInUseWithoutOne) {
  EXPECT_EQ(&platform::current(), &platform::native());
}

TEST(Substitute, StandsInForAsLongAsItLives) {
  MemoryPlatform world;
  {
    const platform::Substitute substitute(world.services);
    EXPECT_EQ(&platform::current(), &world.services);
  }
  EXPECT_EQ(&platform::current(), &platform::native());
}

TEST(Substitute, ScopesNest) {
  MemoryPlatform outer;
  MemoryPlatform inner;
  const platform::Substitute first(outer.services);
  {
    const platform::Substitute second(inner.services);
    EXPECT_EQ(&platform::current(), &inner.services);
  }
  EXPECT_EQ(&platform::current(), &outer.services);
}

TEST(Substitute, TheLibraryAsksThePlatformInUse) {
  MemoryPlatform older;
  MemoryPlatform newer;
  older.system.setVersion(10, 8, 5);
  newer.system.setVersion(10, 17, 0);
  const platform::Substitute first(older.services);
  EXPECT_EQ(CommonTooWenlolib::systemVersionNum(), 100805);
  {
    const platform::Substitute second(newer.services);
    EXPECT_EQ(CommonTooWenlolib::systemVersionNum(), 101700);
  }
  EXPECT_EQ(CommonTooWenlolib::systemVersionNum(), 100805);
}

TEST(Substitute, TheNativePlatformHasEveryService) {
  const platform::Platform& native = platform::native();
  EXPECT_NE(native.system, nullptr);
  EXPECT_NE(native.clock, nullptr);
  EXPECT_NE(native.calendar, nullptr);
  EXPECT_NE(native.files, nullptr);
  EXPECT_NE(native.propertyLists, nullptr);
  EXPECT_NE(native.bundles, nullptr);
  EXPECT_NE(native.user, nullptr);
  EXPECT_NE(native.digest, nullptr);
  EXPECT_NE(native.cipher, nullptr);
  EXPECT_NE(native.xml, nullptr);
  EXPECT_NE(native.uuids, nullptr);
  EXPECT_NE(native.programs, nullptr);
}

}  // namespace
}  // namespace wenlolib::tests
