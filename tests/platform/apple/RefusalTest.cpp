// What the port does where the system refuses a call, and that it releases what it has made. Only a
// stub can refuse.
#include "platform/apple/AppleServices.h"
#include "platform/apple/CipherTest.h"

namespace wenlolib::tests {
namespace {

class RefusedCalls : public StubTest {};

TEST_F(RefusedCalls, LeaveNoLocalTime) {
  platform::apple::AppleCalendar calendar;
  const std::size_t runs = refusingEachCall([&](const std::string& refused) {
    // Only a lack of memory refuses the calendar or the zone, so these throw.
    if (refused == "CFCalendarCreateWithIdentifier" || refused == "CFTimeZoneCopyDefault") {
      EXPECT_THROW(static_cast<void>(calendar.localTime(Instant(Seconds(0)))), std::bad_alloc);
    } else {
      EXPECT_EQ(calendar.localTime(Instant(Seconds(0))).has_value(), refused.empty());
    }
  });
  EXPECT_EQ(runs, 3U);
}

TEST_F(RefusedCalls, LeaveNoIdentifier) {
  platform::apple::AppleUuids uuids;
  const std::size_t runs = refusingEachCall(
      [&](const std::string& refused) { EXPECT_EQ(uuids.create().has_value(), refused.empty()); });
  EXPECT_GE(runs, 2U);
}

class RefusedCipher : public CipherTest<StubTest> {};

TEST_F(RefusedCipher, TakesItsStepsInOrder) {
  EXPECT_EQ(encrypt(), 0);
  EXPECT_EQ(world.calls, (std::vector<std::string>{
                             "CFDictionaryCreateMutable", "CFDataCreate", "SecKeyCreateFromData",
                             "SecEncryptTransformCreate", "CFDataCreate",
                             "SecTransformSetAttribute", "SecTransformExecute"}));
  EXPECT_EQ(output, secret);
  EXPECT_EQ(length, 9);
}

TEST_F(RefusedCipher, RefusedAtAnyStepLeavesTheOutputsAlone) {
  for (const stubs::Refusal how : {stubs::Refusal::noObject, stubs::Refusal::noObjectAndError,
                                   stubs::Refusal::objectAndError, stubs::Refusal::exception}) {
    world = stubs::World();
    world.refusal = how;
    const std::size_t steps = refusingEachCall([&](const std::string& refused) {
      const bool onlyItsAnswer =
          refused == "SecTransformSetAttribute" && how == stubs::Refusal::noObject;
      if (refused.empty() || onlyItsAnswer) return static_cast<void>(encrypt());
      expectRefused();
      // Nothing is asked after a refused step, except for the key after its parameters.
      const std::size_t first = refused == "CFDictionaryCreateMutable" ? 1 : 0;
      EXPECT_EQ(world.calls.size(), *world.refusedCall + 1 + first);
    });
    EXPECT_EQ(steps, 7U);
  }
}

TEST_F(RefusedCipher, EncryptsNothingByTheSameSteps) {
  const auto encryptsNothing = [] {
    return platform::apple::TransformCipher().rc4(bytesOf(key), {}, nullptr);
  };
  const std::size_t steps = refusingEachCall([&](const std::string& refused) {
    const bool onlyItsAnswer = refused == "SecTransformSetAttribute";
    const bool noData = refused == "SecTransformExecute";  // counts as data without any bytes
    EXPECT_EQ(encryptsNothing(), refused.empty() || onlyItsAnswer || noData) << refused;
  });
  EXPECT_EQ(steps, 7U);
  world = stubs::World();
  world.refusal = stubs::Refusal::noObjectAndError;
  EXPECT_EQ(refusingEachCall([&](const std::string& refused) {
              EXPECT_EQ(encryptsNothing(), refused.empty()) << refused;
            }),
            7U);
}

}  // namespace
}  // namespace wenlolib::tests
