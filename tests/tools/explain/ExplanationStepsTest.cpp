// What an explanation says about the steps.
#include <gtest/gtest.h>

#include "explain/Explanation.h"
#include "support/PlatformTest.h"

namespace wenlolib::tests {
namespace {

using tools::Explanation;

class ExplanationOf : public InstalledTest {
 protected:
  void setAgreement(const Value& agreement) {
    Dictionary preferences = agreedPreferences(world.clock.time, 100);
    preferences.insert_or_assign("LatestSelectedAgreement", agreement);
    world.propertyLists.add(preferencePath, preferences);
  }

  static tools::Step refusal(const Explanation& explanation) {
    for (const tools::Step& step : explanation.steps) {
      if (step.state == StepState::refused) return step;
    }
    return {};
  }
};

TEST_F(ExplanationOf, AnAgreementOfAnotherTypeNamesFileKeyAndWhatIsThere) {
  setAgreement("YES");
  const Explanation explanation = tools::explain(RecordKind::application, 17);
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "no_agreement");
  const tools::Step step = refusal(explanation);
  EXPECT_EQ(step.source, preferencePath);
  EXPECT_EQ(step.key, "LatestSelectedAgreement");
  EXPECT_EQ(step.found, "text \"YES\"");
}

TEST_F(ExplanationOf, AModeIsReadFromTheLowFourBits) {
  const Explanation explanation = tools::explain(RecordKind::application, 19);
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "mode_refused");
  EXPECT_EQ(refusal(explanation).found, "option 19, mode 3");
}

TEST_F(ExplanationOf, TheListNamesTheKeyThatIsLookedUp) {
  world.system.setVersion(10, 17, 2);
  world.propertyLists.add(versionListPath, {{"1003.1", "10.17.1"}});
  const Explanation explanation = tools::explain(RecordKind::application, 2);
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "not_in_support_list");
  const tools::Step step = refusal(explanation);
  EXPECT_EQ(step.source, versionListPath);
  EXPECT_EQ(step.key, "1003.1");
  EXPECT_EQ(step.expected, "a text, 10.17.2 or later");
  EXPECT_EQ(step.found, "text \"10.17.1\"");
}

TEST_F(ExplanationOf, APrinterLogDependsOnTheInstalledLibrary) {
  world.system.setVersion(10, 17, 0);
  world.bundles.informationByPath.clear();
  const Explanation explanation = tools::explain(RecordKind::printerLog, 0);
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "library_version_unknown");
  EXPECT_EQ(refusal(explanation).source, installedBundle);
}

TEST_F(ExplanationOf, ModeZeroShowsWhichReadingFailed) {
  for (const std::size_t reading : {1U, 2U}) {
    world.faults.fail("propertyLists.read", static_cast<int>(reading));
    const Explanation explanation = tools::explain(RecordKind::application, 0);
    world.faults.forgive();
    EXPECT_EQ(gateNames[explanation.refusedBy].reason, "no_preferences");
    EXPECT_EQ(refusal(explanation).gate, Gate::preferences);
    EXPECT_EQ(refusal(explanation).reading, reading);
  }
}

TEST_F(ExplanationOf, ModeTwoNeedsNoPreferences) {
  const Explanation explanation = tools::explain(RecordKind::application, 2);
  ASSERT_TRUE(explanation.allowed());
  for (const tools::Step& step : explanation.steps) {
    const bool taken = step.gate == Gate::osVersion || step.gate == Gate::mode;
    EXPECT_EQ(step.state, taken ? StepState::passed : StepState::notNeeded)
        << gateNames[step.gate].code;
  }
}

TEST_F(ExplanationOf, WithoutAHomeThereIsNoFileToLookInto) {
  world.user.login.reset();
  const Explanation explanation = tools::explain(RecordKind::application, 1);
  EXPECT_EQ(gateNames[explanation.refusedBy].reason, "no_preferences");
  EXPECT_NE(refusal(explanation).source.find("home folder is not known"), std::string::npos);
}

TEST_F(ExplanationOf, NothingInAFileSteersTheTerminal) {
  setAgreement("\x1B[31mYES\n\x07");
  const Explanation explanation = tools::explain(RecordKind::application, 1);
  const std::string text = tools::explanationText(explanation, {tools::Paint(false)}, "");
  EXPECT_EQ(text.find('\x1B'), std::string::npos);
  EXPECT_EQ(text.find('\x07'), std::string::npos);
}

TEST(ReasonCodes, AreTheOnesThatProgramsRelyOn) {
  const std::pair<Gate, std::string_view> table[] = {
      {Gate::none, "allowed"},
      {Gate::osVersion, "os_version_unknown"},
      {Gate::libraryVersion, "library_version_unknown"},
      {Gate::supportVersionList, "not_in_support_list"},
      {Gate::mode, "mode_refused"},
      {Gate::preferences, "no_preferences"},
      {Gate::installationDate, "no_installation_date"},
      {Gate::period, "period_over"},
      {Gate::agreement, "no_agreement"},
  };
  for (const auto& [gate, code] : table) EXPECT_EQ(gateNames[gate].reason, code);
}

}  // namespace
}  // namespace wenlolib::tests
