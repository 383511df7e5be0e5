#include "doctor/Examination.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/EnumTable.h"
#include "library/Wording.h"
#include "terminal/Format.h"
#include "terminal/Json.h"
#include "terminal/VisibleText.h"
#include "toolkit/Folders.h"

namespace wenlolib::tools {
namespace {

struct LevelNames {
  std::string_view text;
  Colour colour;
};

constexpr EnumTable<Level, LevelNames> levelNames({
    {Level::ok, {"ok", Colour::good}},
    {Level::warning, {"warning", Colour::doubtful}},
    {Level::error, {"error", Colour::bad}},
});

std::size_t countOf(const Findings& findings, Level level) {
  return static_cast<std::size_t>(std::ranges::count(findings, level, &Finding::level));
}

/// One line, or one for the subject and more for the message. A path is never broken.
std::string findingText(const Finding& finding, const Style& style, const std::string& folder) {
  const std::size_t width = style.textWidth();
  constexpr std::size_t indent = 9;
  const std::string blanks(indent, ' ');
  const LevelNames& level = levelNames[finding.level];
  const std::string subject = shortPath(finding.subject, folder);
  std::string text = style.paint(level.colour, level.text) +
                     std::string(indent - level.text.size(), ' ') + subject;
  const std::string joint = std::string(": ").append(finding.message);
  if (indent + displayWidth(subject + joint) <= width) {
    text += joint + "\n";
  } else {
    text.append("\n").append(wrap(blanks + finding.message, width, indent)).append("\n");
  }
  if (finding.remedy.empty()) return text;
  return text + wrap(blanks + "remedy: " + finding.remedy, width, indent) + "\n";
}

std::string summary(const Findings& findings) {
  const std::size_t errors = countOf(findings, Level::error);
  const std::size_t warnings = countOf(findings, Level::warning);
  if (errors + warnings == 0) return "All is well.\n";
  if (warnings == 0) return countText(errors, "error") + ".\n";
  const std::string before = errors == 0 ? "" : countText(errors, "error") + ", ";
  return before + countText(warnings, "warning") + ".\n";
}

}  // namespace

bool hasErrors(const Findings& findings) {
  return countOf(findings, Level::error) > 0;
}

std::string findingsText(const Findings& findings, const Style& style,
                         const std::string& supportFolder) {
  std::string text = shortFolderText(supportFolder);
  for (const Finding& finding : findings) {
    text += findingText(finding, style, supportFolder);
  }
  return text + "\n" + summary(findings);
}

std::string findingsJson(const Findings& findings) {
  std::string lines;
  for (const Finding& finding : findings) {
    Json json = jsonObject("finding");
    json["level"] = levelNames[finding.level].text;
    json["check"] = finding.check;
    put(json, "subject", std::string_view(finding.subject));
    put(json, "message", std::string_view(finding.message));
    putIfAny(json, "remedy", finding.remedy);
    lines += jsonLine(json);
  }
  return lines;
}

Findings examine(const ToolPlatform& platform, const ExaminationOptions& options) {
  Findings findings;
  checkFolders(platform, findings);
  if (supportFolder()) {
    checkPreferences(platform, findings);
    checkSupportList(platform, findings);
    checkIdentifier(platform, findings);
  }
  checkVersions(platform, findings);
  checkPlugin(options.plugin, findings);
  checkDecisions(findings);
  if (supportFolder()) {
    checkLeftovers(platform, options.clean, findings);
    checkNumbers(platform, findings);
    checkDisk(platform, findings);
  }
  return findings;
}

}  // namespace wenlolib::tools
