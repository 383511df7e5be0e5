#include "policy/RecordingGates.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <vector>

namespace wenlolib::tests {
namespace {

const Instant now{Seconds(2000000000.0)};

/// Facts that a test sets. It keeps the questions in the order in which they were asked.
class SetFacts : public SupportFacts {
 public:
  std::int32_t os = 101507;
  std::int32_t running = 30100;
  std::int32_t installed = 30001;
  std::int32_t list = 1;
  std::vector<std::optional<Dictionary>> files;  // one per reading; the last one is used again
  std::vector<std::string> asked;

  std::int32_t upperOSVersion() override { return note("bound"), 101700; }
  std::int32_t osVersion() override { return note("os"), os; }
  std::int32_t runningLibraryVersion() override { return note("running"), running; }
  std::int32_t installedLibraryVersion() override { return note("installed"), installed; }
  std::int32_t listAnswer(std::int32_t version) override {
    return note("list " + std::to_string(version)), list;
  }
  std::optional<Dictionary> preferences() override {
    note("preferences");
    if (files.empty()) return std::nullopt;
    const std::optional<Dictionary> file = files.front();
    if (files.size() > 1) files.erase(files.begin());
    return file;
  }
  Instant now() override { return note("now"), tests::now; }

 private:
  void note(const std::string& question) { asked.push_back(question); }
};

Gate applicationRefusal(SupportFacts& facts, std::uint32_t option) {
  return refusal(facts, RecordKind::application, option);
}

Gate printerLogRefusal(SupportFacts& facts) {
  return refusal(facts, RecordKind::printerLog, 0);
}

using Questions = std::vector<std::string>;

Dictionary preferences(double secondsAgo, const Value& agreement) {
  return {{"InstalledDate", now - Seconds(secondsAgo)}, {"LatestSelectedAgreement", agreement}};
}

constexpr double day = 86400;

SetFacts allowing() {
  SetFacts facts;
  facts.files = {preferences(100 * day, true)};
  return facts;
}

TEST(ApplicationRefusal, JudgesByTheModeInTheLowFourBits) {
  const struct {
    std::uint32_t option;
    Gate gate;
  } table[] = {{0, Gate::none},  {1, Gate::none},           {2, Gate::none},
               {3, Gate::mode},  {4, Gate::mode},           {15, Gate::mode},
               {16, Gate::none}, {17, Gate::none},          {18, Gate::none},
               {19, Gate::mode}, {0xFFFFFFF0U, Gate::none}, {0xFFFFFFF3U, Gate::mode}};
  for (const auto& row : table) {
    SetFacts facts = allowing();
    EXPECT_EQ(applicationRefusal(facts, row.option), row.gate) << row.option;
  }
}

TEST(ApplicationRefusal, ModeTwoNeedsNoPreferencesAndReadsNone) {
  SetFacts facts;
  EXPECT_EQ(applicationRefusal(facts, 2), Gate::none);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os"}));
}

TEST(ApplicationRefusal, RefusedModesReadNoPreferences) {
  SetFacts facts = allowing();
  EXPECT_EQ(applicationRefusal(facts, 3), Gate::mode);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os"}));
}

TEST(ApplicationRefusal, ModeOneReadsThePreferencesOnce) {
  SetFacts facts = allowing();
  EXPECT_EQ(applicationRefusal(facts, 1), Gate::none);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences", "now"}));
}

TEST(ApplicationRefusal, ModeZeroReadsThemASecondTimeForTheAgreement) {
  SetFacts facts = allowing();
  EXPECT_EQ(applicationRefusal(facts, 0), Gate::none);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences", "now", "preferences"}));
}

TEST(ApplicationRefusal, ModeZeroUsesTheSecondReadingAndModeOneTheFirst) {
  const auto agreed = preferences(100 * day, true);
  const auto refused = preferences(100 * day, false);
  const auto old = preferences(5000 * day, true);
  const struct {
    std::uint32_t option;
    std::optional<Dictionary> first, second;
    Gate gate;
  } table[] = {
      {0, agreed, refused, Gate::agreement},
      {0, refused, agreed, Gate::none},
      {0, agreed, std::nullopt, Gate::preferences},
      {0, agreed, old, Gate::none},
      {0, old, agreed, Gate::period},
      {1, agreed, refused, Gate::none},
      {1, refused, agreed, Gate::agreement},
  };
  int row = 0;
  for (const auto& [option, first, second, gate] : table) {
    SetFacts facts;
    facts.files = {first, second};
    EXPECT_EQ(applicationRefusal(facts, option), gate) << row;
    ++row;
  }
}

TEST(ApplicationRefusal, TheSecondReadingIsLeftOutAfterThePeriod) {
  SetFacts facts;
  facts.files = {preferences(5000 * day, true)};
  EXPECT_EQ(applicationRefusal(facts, 0), Gate::period);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences", "now"}));
}

TEST(ApplicationRefusal, TheListCountsFromTheUpperBoundOn) {
  const struct {
    std::int32_t os, list;
    Gate gate;
    bool listAsked;
  } table[] = {
      {101699, -1, Gate::none, false},
      {101700, -1, Gate::supportVersionList, true},
      {101700, 1, Gate::none, true},
      {101700, 0, Gate::supportVersionList, true},
      {101700, 2, Gate::supportVersionList, true},
      {110000, 1, Gate::none, true},
      {-1, 1, Gate::osVersion, false},
      {-2, -1, Gate::none, false},
      {0, -1, Gate::none, false},
  };
  for (const auto& row : table) {
    SetFacts facts = allowing();
    facts.os = row.os;
    facts.list = row.list;
    EXPECT_EQ(applicationRefusal(facts, 2), row.gate) << row.os;
    const Questions listed = {"bound", "os", "running", "list 30100"};
    EXPECT_EQ(facts.asked, row.listAsked ? listed : (Questions{"bound", "os"}));
  }
}

TEST(ApplicationRefusal, AnUnknownLibraryVersionIsNotLookedUp) {
  SetFacts facts = allowing();
  facts.os = 101700;
  facts.running = -1;
  EXPECT_EQ(applicationRefusal(facts, 2), Gate::libraryVersion);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os", "running"}));
}

TEST(ApplicationRefusal, AnUnknownOSRefusesEveryModeAtOnce) {
  for (std::uint32_t option = 0; option < 16; ++option) {
    SetFacts facts = allowing();
    facts.os = -1;
    EXPECT_EQ(applicationRefusal(facts, option), Gate::osVersion);
    EXPECT_EQ(facts.asked, (Questions{"bound", "os"}));
  }
}

TEST(Period, EndsAtTheVeryInstant) {
  const struct {
    double secondsAgo;
    Gate application, printerLog;
  } table[] = {
      {-1e9, Gate::none, Gate::none},  // installed in the future
      {0, Gate::none, Gate::none},
      {124415999.5, Gate::none, Gate::none},
      {124416000, Gate::period, Gate::none},
      {124416000.5, Gate::period, Gate::none},
      {2000 * day, Gate::period, Gate::none},
      {312249599.5, Gate::period, Gate::none},
      {312249600, Gate::period, Gate::period},
      {std::numeric_limits<double>::infinity(), Gate::period, Gate::period},
      {std::numeric_limits<double>::quiet_NaN(), Gate::period, Gate::period},
  };
  for (const auto& row : table) {
    for (const std::uint32_t option : {0U, 1U}) {
      SetFacts facts;
      facts.files = {preferences(row.secondsAgo, true)};
      EXPECT_EQ(applicationRefusal(facts, option), row.application) << row.secondsAgo;
    }
    SetFacts facts;
    facts.files = {preferences(row.secondsAgo, true)};
    EXPECT_EQ(printerLogRefusal(facts), row.printerLog) << row.secondsAgo;
  }
}

TEST(Period, WithoutAnInstallationDateNothingIsWithin) {
  const Dictionary withoutDate[] = {
      {{"LatestSelectedAgreement", true}},
      {{"LatestSelectedAgreement", true}, {"InstalledDate", "2026-01-01"}},
      {{"LatestSelectedAgreement", true}, {"InstalledDate", 1.9e9}},
      {{"LatestSelectedAgreement", true}, {"installeddate", now}},
  };
  for (const Dictionary& file : withoutDate) {
    for (const std::uint32_t option : {0U, 1U}) {
      SetFacts facts;
      facts.files = {file};
      EXPECT_EQ(applicationRefusal(facts, option), Gate::installationDate);
    }
    SetFacts facts;
    facts.files = {file};
    EXPECT_EQ(printerLogRefusal(facts), Gate::installationDate);
  }
}

TEST(Agreement, IsAnyNumberThatReadsAsTrue) {
  const struct {
    Value agreement;
    Gate gate;
  } table[] = {
      {true, Gate::none},
      {1, Gate::none},
      {1.0, Gate::none},
      {2U, Gate::none},
      {-1, Gate::none},
      {false, Gate::agreement},
      {0, Gate::agreement},
      {0.0, Gate::agreement},
      {"YES", Gate::agreement},
      {"1", Gate::agreement},
      {now, Gate::agreement},
      {Value::Data{1}, Gate::agreement},
      {Value::Array{true}, Gate::agreement},
  };
  int row = 0;
  for (const auto& [agreement, gate] : table) {
    for (const std::uint32_t option : {0U, 1U}) {
      SetFacts facts;
      facts.files = {preferences(100 * day, agreement)};
      EXPECT_EQ(applicationRefusal(facts, option), gate) << row;
    }
    ++row;
  }
}

TEST(Agreement, MissingIsARefusal) {
  SetFacts facts;
  facts.files = {Dictionary{{"InstalledDate", now}, {"latestselectedagreement", true}}};
  EXPECT_EQ(applicationRefusal(facts, 1), Gate::agreement);
}

TEST(ApplicationRefusal, WithoutPreferencesModesZeroAndOneAreRefused) {
  for (const std::uint32_t option : {0U, 1U}) {
    SetFacts facts;
    EXPECT_EQ(applicationRefusal(facts, option), Gate::preferences);
    EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences"}));
  }
}

TEST(PrinterLogRefusal, NeedsNoAgreement) {
  SetFacts facts;
  facts.files = {preferences(100 * day, false)};
  EXPECT_EQ(printerLogRefusal(facts), Gate::none);
  EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences", "now"}));
}

TEST(PrinterLogRefusal, IgnoresTheOption) {
  for (std::uint32_t option = 0; option < 16; ++option) {
    SetFacts facts = allowing();
    EXPECT_EQ(refusal(facts, RecordKind::printerLog, option), Gate::none);
    EXPECT_EQ(facts.asked, (Questions{"bound", "os", "preferences", "now"})) << option;
  }
}

TEST(PrinterLogRefusal, LooksTheInstalledLibraryUp) {
  SetFacts facts = allowing();
  facts.os = 101700;
  EXPECT_EQ(printerLogRefusal(facts), Gate::none);
  EXPECT_EQ(facts.asked,
            (Questions{"bound", "os", "installed", "list 30001", "preferences", "now"}));
}

TEST(PrinterLogRefusal, StopsAtTheFirstGateThatRefuses) {
  SetFacts facts;
  EXPECT_EQ(printerLogRefusal(facts), Gate::preferences);
  facts.os = -1;
  EXPECT_EQ(printerLogRefusal(facts), Gate::osVersion);
  facts.os = 101700;
  facts.list = -1;
  EXPECT_EQ(printerLogRefusal(facts), Gate::supportVersionList);
  facts.installed = -1;
  EXPECT_EQ(printerLogRefusal(facts), Gate::libraryVersion);
}

using Reported = std::vector<std::tuple<Gate, StepState, std::size_t>>;

Reported reported(SetFacts facts, RecordKind kind, std::uint32_t option) {
  std::vector<DecisionStep> steps;
  SetFacts alone = facts;
  EXPECT_EQ(refusal(facts, kind, option, &steps), refusal(alone, kind, option));
  EXPECT_EQ(facts.asked, alone.asked);
  Reported told;
  for (const DecisionStep& step : steps) told.emplace_back(step.gate, step.state, step.reading);
  return told;
}

TEST(Steps, AreAllReportedWithTheReadingThatTheyUse) {
  SetFacts facts;
  facts.files = {preferences(100 * day, true), std::nullopt};
  const Reported steps = {{Gate::osVersion, StepState::passed, 0},
                          {Gate::libraryVersion, StepState::notNeeded, 0},
                          {Gate::supportVersionList, StepState::notNeeded, 0},
                          {Gate::mode, StepState::passed, 0},
                          {Gate::preferences, StepState::passed, 1},
                          {Gate::installationDate, StepState::passed, 1},
                          {Gate::period, StepState::passed, 1},
                          {Gate::preferences, StepState::refused, 2},
                          {Gate::agreement, StepState::notReached, 2}};
  EXPECT_EQ(reported(facts, RecordKind::application, 0), steps);
}

TEST(Steps, OfAPrinterLogKnowNeitherModeNorAgreement) {
  SetFacts facts = allowing();
  facts.os = 101700;
  facts.list = 0;
  const Reported steps = {{Gate::osVersion, StepState::passed, 0},
                          {Gate::libraryVersion, StepState::passed, 0},
                          {Gate::supportVersionList, StepState::refused, 0},
                          {Gate::preferences, StepState::notReached, 1},
                          {Gate::installationDate, StepState::notReached, 1},
                          {Gate::period, StepState::notReached, 1}};
  EXPECT_EQ(reported(facts, RecordKind::printerLog, 2), steps);
}

}  // namespace
}  // namespace wenlolib::tests
