// Compares the order of an explanation's steps with the order in which the decision asks.
#include <gtest/gtest.h>

#include <vector>

#include "explain/Explanation.h"
#include "support/PlatformTest.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "tools/explain/RandomStates.h"

namespace wenlolib::tests {
namespace {

using tools::Explanation;
using tools::Step;

/// Passes every question on, and notes, in order, for which gate it was asked.
class Journal : public SupportFacts {
 public:
  std::int32_t upperOSVersion() override { return upperBound = facts_.upperOSVersion(); }
  std::int32_t osVersion() override {
    gates.push_back(Gate::osVersion);
    return os = facts_.osVersion();
  }
  std::int32_t runningLibraryVersion() override {
    gates.push_back(Gate::libraryVersion);
    return facts_.runningLibraryVersion();
  }
  std::int32_t installedLibraryVersion() override {
    gates.push_back(Gate::libraryVersion);
    return facts_.installedLibraryVersion();
  }
  std::int32_t listAnswer(std::int32_t libraryVersion) override {
    gates.push_back(Gate::supportVersionList);
    return facts_.listAnswer(libraryVersion);
  }
  std::optional<Dictionary> preferences() override {
    gates.push_back(Gate::preferences);
    readings.push_back(facts_.preferences());
    return readings.back();
  }
  Instant now() override {
    gates.push_back(Gate::period);
    return facts_.now();
  }

  std::vector<Gate> gates;
  std::vector<std::optional<Dictionary>> readings;
  std::int32_t upperBound = 0;
  std::int32_t os = 0;

 private:
  PlatformFacts facts_;
};

/// One decision: what it asked, and how it is explained.
struct Told {
  std::uint32_t option = 0;
  Journal journal;
  Explanation explanation;
};

Told tell(RecordKind kind, std::uint32_t option) {
  Told told{option, {}, tools::explain(kind, option)};
  EXPECT_EQ(told.explanation.refusedBy, refusal(told.journal, kind, option));
  return told;
}

bool isTaken(const Step& step) {
  return step.state == StepState::passed || step.state == StepState::refused;
}

/// The other gates use the option, or an answer from another step.
bool hasItsOwnQuestion(Gate gate) {
  return gate != Gate::mode && gate != Gate::installationDate && gate != Gate::agreement;
}

void expectOrderOfQuestions(const Told& told) {
  std::vector<Gate> gates;
  std::size_t reading = 0;
  for (const Step& step : told.explanation.steps) {
    if (!isTaken(step) || !hasItsOwnQuestion(step.gate)) continue;
    gates.push_back(step.gate);
    if (step.gate == Gate::preferences) ++reading;
    EXPECT_TRUE(step.gate != Gate::preferences || step.reading == reading);
  }
  EXPECT_EQ(gates, told.journal.gates);
}

/// Only these steps are not needed: below the upper bound, the library version and the list; in
/// mode 2, everything after the mode.
void expectNeeded(const Told& told) {
  const bool below = told.journal.os < told.journal.upperBound;
  const bool ended = told.explanation.kind == RecordKind::application &&
                     optionMode(told.option) == 2 && told.explanation.allowed();
  bool behindMode = false;
  for (const Step& step : told.explanation.steps) {
    if (step.state == StepState::refused) return;
    const bool ofTheList =
        step.gate == Gate::libraryVersion || step.gate == Gate::supportVersionList;
    const bool without = (ofTheList && below) || (ended && behindMode);
    EXPECT_EQ(step.state, without ? StepState::notNeeded : StepState::passed)
        << gateNames[step.gate].code;
    if (step.gate == Gate::mode) behindMode = true;
  }
}

/// A step without a question of its own that counts as passed comes after the step that it depends
/// on.
void expectPassedOnPurpose(const Told& told) {
  for (const Step& step : told.explanation.steps) {
    if (step.state != StepState::passed || hasItsOwnQuestion(step.gate)) continue;
    if (step.gate == Gate::mode) {
      EXPECT_LE(optionMode(told.option), 2U);
      continue;
    }
    ASSERT_LE(step.reading, told.journal.readings.size());
    const std::optional<Dictionary>& preferences = told.journal.readings[step.reading - 1];
    const bool date = step.gate == Gate::installationDate;
    const Value* value = entry(preferences, date ? "InstalledDate" : "LatestSelectedAgreement");
    ASSERT_NE(value, nullptr) << gateNames[step.gate].code;
    EXPECT_TRUE(date ? value->date() != nullptr : value->truth().value_or(false));
  }
}

using OrderOfSteps = PlatformTest;

TEST_F(OrderOfSteps, IsTheOneInWhichTheDecisionAsks) {
  constexpr int states = 20000;
  Dice dice(1623);
  std::size_t questions = 0;
  for (int state = 0; state < states && !HasFailure(); ++state) {
    SCOPED_TRACE(state);
    setState(world, dice);
    const std::uint32_t option = randomOption(dice);
    for (const RecordKind kind : {RecordKind::application, RecordKind::printerLog}) {
      const Told told = tell(kind, option);
      SCOPED_TRACE(gateNames[told.explanation.refusedBy].reason);
      expectOrderOfQuestions(told);
      expectNeeded(told);
      expectPassedOnPurpose(told);
      questions += told.journal.gates.size();
    }
  }
  EXPECT_GT(questions, std::size_t{2} * states);
}

}  // namespace
}  // namespace wenlolib::tests
