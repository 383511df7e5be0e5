// Compares explanations with the library's own answers, in all kinds of states.
#include "explain/Explanation.h"

#include <gtest/gtest.h>

#include <map>

#include "explain/Replay.h"
#include "support/PlatformTest.h"
#include "tools/explain/RandomStates.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

using tools::Explanation;

/// First steps that passed or were not needed, then perhaps one that refused. After that, no step
/// is reached.
void expectSound(const Explanation& explanation) {
  bool refused = false;
  for (const tools::Step& step : explanation.steps) {
    const bool taken = step.state == StepState::passed || step.state == StepState::refused;
    EXPECT_EQ(step.state == StepState::notReached, refused);
    EXPECT_NE(taken, step.source.empty() || step.expected.empty() || step.found.empty());
    EXPECT_EQ(step.state == StepState::refused, !step.remedy.empty());
    if (step.state != StepState::refused) continue;
    refused = true;
    EXPECT_EQ(step.gate, explanation.refusedBy);
  }
  EXPECT_EQ(refused, !explanation.allowed());
}

using ExplanationOfStates = PlatformTest;

TEST_F(ExplanationOfStates, IsTheLibrarysOwnAnswerInEveryState) {
  constexpr int states = 20000;
  Dice dice(4711);
  std::map<RecordKind, std::map<Gate, int>> outcomes;
  for (int state = 0; state < states && !HasFailure(); ++state) {
    SCOPED_TRACE(state);
    setState(world, dice);
    const std::uint32_t option = randomOption(dice);
    const Explanation application = tools::explain(RecordKind::application, option);
    const Explanation printer = tools::explain(RecordKind::printerLog, option);
    EXPECT_EQ(application.allowed(), WENLOLIB::isSupported(option));
    EXPECT_EQ(printer.allowed(), WENLOLIB::isSupportedPlm(option));
    expectSound(application);
    expectSound(printer);
    ++outcomes[RecordKind::application][application.refusedBy];
    ++outcomes[RecordKind::printerLog][printer.refusedBy];
  }
  // The states are of no use unless every outcome appears, and often.
  constexpr int often = 100;
  for (const Gate gate :
       {Gate::none, Gate::osVersion, Gate::libraryVersion, Gate::supportVersionList,
        Gate::preferences, Gate::installationDate, Gate::period}) {
    EXPECT_GT(outcomes[RecordKind::application][gate], often) << gateNames[gate].reason;
    EXPECT_GT(outcomes[RecordKind::printerLog][gate], often) << gateNames[gate].reason;
  }
  EXPECT_GT(outcomes[RecordKind::application][Gate::mode], often);
  EXPECT_GT(outcomes[RecordKind::application][Gate::agreement], often);
}

TEST_F(ExplanationOfStates, ReplayedIsTheAnswerOfTheStateItself) {
  constexpr int states = 3000;
  Dice dice(815);
  int allowed = 0;
  for (int state = 0; state < states && !HasFailure(); ++state) {
    SCOPED_TRACE(state);
    const OS os = dice.oneOf(systems);
    const double back[] = {0, 86400, 124416000, 312249600, -1e9};
    const Instant date = now + Seconds(dice.oneOf(back));
    const std::string version = dice.oneIn(2) ? "3.1.0" : "3.0.1";
    setFiles(world, dice);
    const std::uint32_t option = randomOption(dice);

    const tools::ReplayedCase replayed{
        {{true, os.major, os.minor, os.bugFix}}, date, {{true, version}}, {}, {}};
    const tools::Replay replay(world.services, replayed);
    Gate application{}, printer{};
    {
      const platform::Substitute substitute(replay.services());
      application = tools::explain(RecordKind::application, option).refusedBy;
      printer = tools::explain(RecordKind::printerLog, option).refusedBy;
    }
    MemoryPlatform& there = world;
    const Instant before = there.clock.time;
    there.clock.time = date;
    there.system.setVersion(os.major, os.minor, os.bugFix);
    there.bundles.own = Dictionary{{"CFBundleShortVersionString", version}};
    there.bundles.informationByPath[installedBundle] = {{"CFBundleVersion", version}};
    EXPECT_EQ(application == Gate::none, WENLOLIB::isSupported(option));
    EXPECT_EQ(printer == Gate::none, WENLOLIB::isSupportedPlm(option));
    allowed += application == Gate::none;
    there.clock.time = before;
    world.system.setVersion(10, 15, 7);
    world.bundles.own.reset();
    world.bundles.informationByPath.clear();
  }
  EXPECT_GT(allowed, 200);
  EXPECT_LT(allowed, states - 200);
}

}  // namespace
}  // namespace wenlolib::tests
