#include "platform/apple/AppleServices.h"

#include "platform/Platform.h"
#include "platform/apple/StubTest.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using platform::Selector;

constexpr std::uint32_t majorCode = 0x73797331;
constexpr std::uint32_t minorCode = 0x73797332;
constexpr std::uint32_t bugFixCode = 0x73797333;
constexpr std::uint32_t architectureCode = 0x73797361;

class AppleSystem : public PortTest {
 protected:
  AppleSystem() {
    services_.system = &system_;
    world.gestalt = {{majorCode, 10}, {minorCode, 9}, {bugFixCode, 5}, {architectureCode, 10}};
  }

 private:
  MemoryPlatform memory_;
  platform::apple::AppleSystem system_;
  platform::Platform services_ = memory_.services;
  platform::Substitute substitute_{services_};
};

using Toolkit = CommonTooWenlolib;

TEST_F(AppleSystem, TellsVersionAndArchitecture) {
  EXPECT_EQ(Toolkit::systemVersion(), "10.9");
  EXPECT_EQ(Toolkit::osVersion(), "10.9.5");
  EXPECT_EQ(Toolkit::systemVersionNum(), 100905);
  EXPECT_EQ(Toolkit::systemBugFixVersion(), 5);
  EXPECT_EQ(Toolkit::systemArchitecture(), 10);
}

struct Failing {
  std::uint32_t selector;
  Text systemVersion, osVersion;
  std::int32_t number, bugFix, architecture;
};

TEST_F(AppleSystem, IsUnknownWhereAnyOneAnswerFails) {
  const Failing cases[] = {
      {majorCode, std::nullopt, std::nullopt, -1, 5, 10},
      {minorCode, std::nullopt, std::nullopt, -1, 5, 10},
      {bugFixCode, "10.9", std::nullopt, -1, -1, 10},
      {architectureCode, "10.9", "10.9.5", 100905, 5, -1},
  };
  const auto answers = world.gestalt;
  for (const Failing& each : cases) {
    world.gestalt = answers;
    world.gestalt.erase(each.selector);
    SCOPED_TRACE(each.selector);
    EXPECT_EQ(Toolkit::systemVersion(), each.systemVersion);
    EXPECT_EQ(Toolkit::osVersion(), each.osVersion);
    EXPECT_EQ(Toolkit::systemVersionNum(), each.number);
    EXPECT_EQ(Toolkit::systemBugFixVersion(), each.bugFix);
    EXPECT_EQ(Toolkit::systemArchitecture(), each.architecture);
  }
}

TEST_F(AppleSystem, StopsAskingAtTheFirstFailure) {
  world.gestalt.erase(minorCode);
  EXPECT_EQ(Toolkit::systemVersionNum(), -1);
  EXPECT_EQ(world.calls.size(), 2U);
}

TEST_F(AppleSystem, IsAskedAnewAtEveryCall) {
  EXPECT_EQ(Toolkit::systemVersionNum(), 100905);
  world.gestalt[minorCode] = 15;
  EXPECT_EQ(Toolkit::systemVersionNum(), 101505);
}

TEST_F(AppleSystem, IsUnknownWhereTheCallIsGone) {
  world.absent = {"Gestalt"};
  EXPECT_EQ(Toolkit::systemVersionNum(), -1);
  EXPECT_EQ(Toolkit::systemArchitecture(), -1);
  EXPECT_TRUE(world.calls.empty());
}

}  // namespace
}  // namespace wenlolib::tests
