/// A support decision, step by step.
#ifndef WENLOLIB_TOOLS_EXPLANATION_H
#define WENLOLIB_TOOLS_EXPLANATION_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "policy/SupportDecision.h"

namespace wenlolib::tools {

enum class RecordKind : std::uint8_t { application, printerLog };

enum class StepState : std::uint8_t {
  passed,
  refused,
  notNeeded,   // the decision did without
  notReached,  // an earlier step has refused
};

/// One gate as a decision came to it. Texts are for a person; "" where there is nothing to say.
struct Step {
  Gate gate = Gate::none;
  StepState state = StepState::notReached;
  std::size_t reading = 1;  // which reading of the preference file it goes by
  std::string source;       // the file, or what else was read
  std::string key;          // in it
  std::string expected;     // for the gate to open
  std::string found;
  std::string remedy;  // what would open it; where the step has refused
};

struct Explanation {
  RecordKind kind = RecordKind::application;
  std::uint32_t option = 0;
  Gate refusedBy = Gate::none;
  std::vector<Step> steps;  // in the order in which the library takes them

  [[nodiscard]] bool allowed() const { return refusedBy == Gate::none; }
};

/// Where what is read really lies.
struct Sources {
  std::string root;  // the port's root folder; "" for the system's
  Text preferences;  // files of a replayed case; null for the one in its place
  Text supportList;
};

/// Makes the library's decision on the platform in use and says how it came about.
[[nodiscard]] Explanation explain(RecordKind kind, std::uint32_t option,
                                  const Sources& sources = {});

/// The code of an outcome, such as "no_agreement"; "allowed" for no gate. These never change.
[[nodiscard]] std::string_view reasonCode(Gate gate);

/// The code of a gate, such as "agreement", and its name for a person, such as "Agreement".
[[nodiscard]] std::string_view gateCode(Gate gate);
[[nodiscard]] std::string_view gateTitle(Gate gate);

}  // namespace wenlolib::tools

#endif
