/// What the steps of a decision went by.
#ifndef WENLOLIB_TOOLS_EXPLANATIONSTEPS_H
#define WENLOLIB_TOOLS_EXPLANATIONSTEPS_H

#include <cstdint>

#include "Explanation.h"
#include "RecordedFacts.h"

namespace wenlolib::tools {

struct StepContext {
  RecordKind kind;
  std::uint32_t option;
  const AskedFacts& asked;
  const Sources& sources;
};

/// Fills in what was read, expected and found at a step that was taken.
void describe(Step& step, const StepContext& context);

}  // namespace wenlolib::tools

#endif
