#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>

#include "support/PlatformTest.h"
#include "toolkit/SystemInformation.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tests {
namespace {

using platform::Selector;
using Toolkit = CommonTooWenlolib;

class SystemInformation : public PlatformTest {};

TEST_F(SystemInformation, ShowsTheVersionInEveryForm) {
  const struct {
    std::int32_t major, minor, bugFix;
    const char* shortText;
    const char* text;
    std::int32_t number;
  } table[] = {
      {10, 9, 5, "10.9", "10.9.5", 100905},
      {10, 15, 7, "10.15", "10.15.7", 101507},
      {10, 16, 0, "10.16", "10.16.0", 101600},
      {10, 8, 0, "10.8", "10.8.0", 100800},
      {6, 1, 170, "6.1", "6.1.170", 60270},        // a bug-fix number of 100 or more carries over
      {10, 120, 0, "10.120", "10.120.0", 112000},  // and so does a minor
      {0, 0, 0, "0.0", "0.0.0", 0},
  };
  for (const auto& row : table) {
    world.system.setVersion(row.major, row.minor, row.bugFix);
    EXPECT_EQ(Toolkit::systemVersion(), Text(row.shortText));
    EXPECT_EQ(Toolkit::osVersion(), Text(row.text));
    EXPECT_EQ(Toolkit::systemVersionNum(), row.number) << row.text;
    EXPECT_EQ(Toolkit::systemBugFixVersion(), row.bugFix);
  }
}

TEST_F(SystemInformation, ThreePartsAreAskedForInOrder) {
  EXPECT_EQ(Toolkit::systemVersionNum(), 101507);
  EXPECT_EQ(world.journal.lines(),
            (Journal::Lines{"system.gestalt sys1", "system.gestalt sys2", "system.gestalt sys3"}));
}

TEST_F(SystemInformation, TheNumberStopsAtTheFirstFailure) {
  world.faults.fail("system.gestalt", 2);
  EXPECT_EQ(Toolkit::systemVersionNum(), -1);
  EXPECT_EQ(world.journal.count("system.gestalt"), 2U);
}

TEST_F(SystemInformation, AFailingBugFixAloneLeavesTheShortText) {
  world.system.setVersion(10, 9, 5);
  world.system.answers.erase(Selector::bugFixVersion);
  EXPECT_EQ(Toolkit::systemVersion(), Text("10.9"));
  EXPECT_EQ(Toolkit::systemBugFixVersion(), -1);
  EXPECT_EQ(Toolkit::osVersion(), std::nullopt);
  EXPECT_EQ(Toolkit::systemVersionNum(), -1);
}

TEST_F(SystemInformation, AFailingMajorOrMinorLeavesNoText) {
  for (const Selector missing : {Selector::majorVersion, Selector::minorVersion}) {
    world.system.setVersion(10, 9, 5);
    world.system.answers.erase(missing);
    EXPECT_EQ(Toolkit::systemVersion(), std::nullopt);
    EXPECT_EQ(Toolkit::osVersion(), std::nullopt);
    EXPECT_EQ(Toolkit::systemVersionNum(), -1);
    EXPECT_EQ(Toolkit::systemBugFixVersion(), 5);
  }
}

TEST_F(SystemInformation, TheFullTextAsksForTheBugFixEvenWithoutAShortText) {
  world.system.answers.erase(Selector::majorVersion);
  EXPECT_EQ(Toolkit::osVersion(), std::nullopt);
  EXPECT_EQ(world.journal.lines(), (Journal::Lines{"system.gestalt sys1", "system.gestalt sys3"}));
}

TEST_F(SystemInformation, NothingIsRememberedBetweenCalls) {
  world.system.setVersion(10, 9, 5);
  EXPECT_EQ(Toolkit::systemVersionNum(), 100905);
  world.system.setVersion(10, 17, 1);
  EXPECT_EQ(Toolkit::systemVersionNum(), 101701);
}

TEST_F(SystemInformation, HugePartsSaturate) {
  world.system.setVersion(std::numeric_limits<std::int32_t>::max(), 0, 0);
  EXPECT_EQ(Toolkit::systemVersionNum(), std::numeric_limits<std::int32_t>::max());
  world.system.setVersion(std::numeric_limits<std::int32_t>::min(), 0, 0);
  EXPECT_EQ(Toolkit::systemVersionNum(), std::numeric_limits<std::int32_t>::min());
}

TEST_F(SystemInformation, TheUpperBoundIsFixedAndAsksNothing) {
  world.system.answers.clear();
  EXPECT_EQ(Toolkit::supportUpperOSVersion(), 101700);
  EXPECT_TRUE(world.journal.lines().empty());
}

TEST_F(SystemInformation, TheArchitectureIsHandedOnAsItIsAnswered) {
  for (const std::int32_t code : {1, 2, 10, 77}) {
    world.system.answers[Selector::systemArchitecture] = code;
    EXPECT_EQ(Toolkit::systemArchitecture(), code);
  }
  world.system.answers.erase(Selector::systemArchitecture);
  EXPECT_EQ(Toolkit::systemArchitecture(), -1);
  EXPECT_EQ(world.journal.count("system.gestalt sysa"), 5U);
}

TEST_F(SystemInformation, PairsAreComparedMajorsFirst) {
  constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
  const struct {
    std::int32_t major, minor, otherMajor, otherMinor;
    std::ptrdiff_t order;
  } table[] = {
      {10, 9, 10, 10, -1}, {11, 0, 10, 15, 1}, {10, 9, 10, 9, 0},
      {10, 10, 10, 9, 1},  {9, 99, 10, 0, -1}, {lowest, 0, highest, 0, -1},
      {-1, 0, 0, 0, -1},   {0, -1, 0, 0, -1},  {highest, highest, lowest, lowest, 1},
  };
  for (const auto& row : table) {
    EXPECT_EQ(
        Toolkit::compareSystemVersionNumber(row.major, row.minor, row.otherMajor, row.otherMinor),
        row.order);
  }
  EXPECT_TRUE(world.journal.lines().empty());
}

/// A system that runs out of memory at one of its questions.
class ShortSystem : public platform::System {
 public:
  explicit ShortSystem(Selector lacking) : lacking_(lacking) {}
  std::optional<std::int32_t> gestalt(Selector selector) override {
    if (selector == lacking_) throw std::bad_alloc();
    return 10;
  }

 private:
  Selector lacking_;
};

TEST_F(SystemInformation, AShortageIsTheFailingAnswerForHosts) {
  for (const Selector lacking :
       {Selector::majorVersion, Selector::minorVersion, Selector::bugFixVersion}) {
    ShortSystem system(lacking);
    platform::Platform services = world.services;
    services.system = &system;
    const platform::Substitute substitute(services);
    const bool bugFix = lacking == Selector::bugFixVersion;
    EXPECT_EQ(Toolkit::systemVersion(), bugFix ? Text("10.10") : Text());
    EXPECT_EQ(Toolkit::systemVersionNum(), -1);
    EXPECT_EQ(Toolkit::systemBugFixVersion(), bugFix ? -1 : 10);
    EXPECT_EQ(Toolkit::osVersion(), std::nullopt);
    EXPECT_EQ(Toolkit::systemArchitecture(), 10);
    // A document must fail then, rather than say that the version is unknown.
    EXPECT_THROW(static_cast<void>(fullOSVersion()), std::bad_alloc);
  }
}

TEST_F(SystemInformation, AShortageLeavesTheArchitectureUnknown) {
  ShortSystem system(Selector::systemArchitecture);
  platform::Platform services = world.services;
  services.system = &system;
  const platform::Substitute substitute(services);
  EXPECT_EQ(Toolkit::systemArchitecture(), -1);
}

}  // namespace
}  // namespace wenlolib::tests
