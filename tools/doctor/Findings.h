/// What an examination of an installation finds.
#ifndef WENLOLIB_TOOLS_DOCTOR_FINDINGS_H
#define WENLOLIB_TOOLS_DOCTOR_FINDINGS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "terminal/Output.h"

namespace wenlolib::tools {

enum class Level : std::uint8_t { ok, warning, error };

struct Finding {
  Level level = Level::ok;
  std::string check;    // what was looked at, a code that never changes
  std::string subject;  // the file, folder or other thing
  std::string message;
  std::string remedy;  // "" where nothing is to be done
};

using Findings = std::vector<Finding>;

[[nodiscard]] bool hasErrors(const Findings& findings);

/// For a person, in lines of 80 columns. `supportFolder`, shown once, is shortened where it begins
/// a subject; "" for none.
[[nodiscard]] std::string findingsText(const Findings& findings, const Paint& paint,
                                       const std::string& supportFolder);

/// One JSON object a line.
[[nodiscard]] std::string findingsJson(const Findings& findings);

}  // namespace wenlolib::tools

#endif
