/// An explanation for a person, and for a program.
#ifndef WENLOLIB_TOOLS_EXPLANATIONTEXT_H
#define WENLOLIB_TOOLS_EXPLANATIONTEXT_H

#include <string>

#include "Explanation.h"
#include "Terminal.h"

namespace wenlolib::tools {

/// The outcome in a few words, such as "refused: Agreement (no_agreement)".
[[nodiscard]] std::string outcomeText(const Explanation& explanation, const Paint& paint);

/// Outcome and steps, in lines of 80 columns but for long paths. `supportFolder`, shown once, is
/// shortened where it begins a path; "" for none.
[[nodiscard]] std::string explanationText(const Explanation& explanation, const Paint& paint,
                                          const std::string& supportFolder);

/// One JSON object on a line.
[[nodiscard]] std::string explanationJson(const Explanation& explanation);

}  // namespace wenlolib::tools

#endif
