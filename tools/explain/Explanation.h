/// A support decision step by step, for a person and for a program.
#ifndef WENLOLIB_TOOLS_EXPLAIN_EXPLANATION_H
#define WENLOLIB_TOOLS_EXPLAIN_EXPLANATION_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/RecordFolder.h"
#include "policy/RecordingGates.h"
#include "terminal/Output.h"
#include "wenlolib/Text.h"

namespace wenlolib::tools {

/// One gate of a decision. Texts are for a person; "" if there is nothing to say.
struct Step : DecisionStep {
  std::string source;    // the file, or whatever else was read
  std::string key;       // in it
  std::string expected;  // for the gate to open
  std::string found;
  std::string remedy;  // what would open the gate; only of a step that refused
};

struct Explanation {
  RecordKind kind = RecordKind::application;
  std::uint32_t option = 0;
  Gate refusedBy = Gate::none;
  std::vector<Step> steps;  // in the order in which the library takes them
  std::string unanswered;   // why the platform did not answer; the library then answers no
  std::optional<std::vector<Obstacle>> afterwards;  // what the record would meet after the
                                                    // decision; absent if nobody has looked

  [[nodiscard]] bool allowed() const { return refusedBy == Gate::none && unanswered.empty(); }

  /// What makes an allowed record fail; null if nothing does.
  [[nodiscard]] const Obstacle* stop() const {
    const bool stops = afterwards && !afterwards->empty() && afterwards->front().stops;
    return stops ? &afterwards->front() : nullptr;
  }
};

/// The code of an outcome, such as "no_agreement"; "no_answer" if the platform gave no answer.
[[nodiscard]] std::string_view reasonCode(const Explanation& explanation);

/// The real places of the files that are read.
struct Sources {
  std::string root;  // the port's root folder; "" for the system's
  Text preferences;  // files of a replayed case; null for those in the usual place
  Text supportList;
  bool os = false;  // what a replayed case sets
  bool date = false;
  bool library = false;
};

/// Makes the library's decision on the platform in use and says how it came about.
[[nodiscard]] Explanation explain(RecordKind kind, std::uint32_t option,
                                  const Sources& sources = {});

/// The step's gate, for a person.
[[nodiscard]] std::string stepTitle(const Step& step);

/// "passed", "not needed" and so on.
[[nodiscard]] std::string_view stateText(StepState state);

/// The outcome in a few words, such as "refused: Agreement (no_agreement)".
[[nodiscard]] std::string outcomeText(const Explanation& explanation, const Paint& paint);

/// Outcome and steps, in lines of the text's width except for long paths. `supportFolder` is shown
/// once, and shortened where a path begins with it; "" for none.
[[nodiscard]] std::string explanationText(const Explanation& explanation, const Style& style,
                                          const std::string& supportFolder);

/// One JSON object on a line.
[[nodiscard]] std::string explanationJson(const Explanation& explanation);

}  // namespace wenlolib::tools

#endif
