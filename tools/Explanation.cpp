#include "Explanation.h"

#include "ExplanationSteps.h"
#include "RecordedFacts.h"
#include "toolkit/OptionMode.h"

namespace wenlolib::tools {
namespace {

/// Whether a step's gate was looked at. Two gates have no question of their own: the mode is part
/// of the option, and the agreement stands in what was read before the clock was asked.
bool wasAsked(const Step& step, const AskedFacts& asked) {
  switch (step.gate) {
    case Gate::osVersion:
      return asked.os.has_value();
    case Gate::libraryVersion:
      return asked.library.has_value();
    case Gate::supportVersionList:
      return asked.list.has_value();
    case Gate::preferences:
    case Gate::installationDate:
      return asked.readings.size() >= step.reading;
    case Gate::period:
    case Gate::agreement:
      return asked.now.has_value();
    default:
      return true;
  }
}

struct Planned {
  Gate gate;
  std::size_t reading = 1;  // which reading of the preference file it goes by
};

std::vector<Planned> plan(RecordKind kind, std::uint32_t option) {
  std::vector<Planned> steps = {
      {Gate::osVersion}, {Gate::libraryVersion}, {Gate::supportVersionList}};
  if (kind == RecordKind::application) steps.push_back({Gate::mode});
  steps.insert(steps.end(), {{Gate::preferences}, {Gate::installationDate}, {Gate::period}});
  if (kind == RecordKind::printerLog) return steps;
  const bool twoReadings = optionMode(option) == 0;
  if (twoReadings) steps.push_back({Gate::preferences, 2});
  steps.push_back({Gate::agreement, twoReadings ? 2U : 1U});
  return steps;
}

/// Where in the plan the decision ended: behind its end when it allowed the record.
std::size_t endOf(const std::vector<Planned>& steps, Gate refusedBy, const AskedFacts& asked) {
  std::size_t end = steps.size();
  for (std::size_t i = 0; i < steps.size() && refusedBy != Gate::none; ++i) {
    // The file may refuse at its first reading, and in mode 0 at the second.
    const bool another = refusedBy == Gate::preferences && steps[i].reading > asked.readings.size();
    if (steps[i].gate == refusedBy && !another) end = i;
  }
  return end;
}

}  // namespace

Explanation explain(RecordKind kind, std::uint32_t option, const Sources& sources) {
  PlatformFacts facts;
  RecordedFacts recorded(facts);
  Explanation explanation{kind, option, Gate::none, {}};
  explanation.refusedBy = kind == RecordKind::application ? applicationRefusal(recorded, option)
                                                          : printerLogRefusal(recorded);
  const AskedFacts& asked = recorded.asked();
  const std::vector<Planned> steps = plan(kind, option);
  const std::size_t end = endOf(steps, explanation.refusedBy, asked);
  for (std::size_t i = 0; i < steps.size(); ++i) {
    Step step;
    step.gate = steps[i].gate;
    step.reading = steps[i].reading;
    if (i == end) {
      step.state = StepState::refused;
    } else if (i < end) {
      const bool needed = wasAsked(step, asked);
      step.state = needed ? StepState::passed : StepState::notNeeded;
    }
    const bool told = step.state == StepState::passed || step.state == StepState::refused;
    if (told) describe(step, {kind, option, asked, sources});
    explanation.steps.push_back(step);
  }
  return explanation;
}

}  // namespace wenlolib::tools
