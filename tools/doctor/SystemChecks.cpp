// Versions, and what the library decides.
#include "doctor/Examination.h"
#include "explain/Explanation.h"
#include "platform/Platform.h"
#include "record/HeaderValues.h"
#include "terminal/VisibleText.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/version.h"

namespace wenlolib::tools {
namespace {

Finding osFinding() {
  const Text version = CommonTooWenlolib::osVersion();
  if (version) return {Level::ok, "os_version", "OS version", *version, ""};
  return {Level::error, "os_version", "OS version", "not known, so nothing is recorded",
          "The kernel release (uname -r) must begin with two numbers."};
}

/// A bundle at a fixed path. It may be missing.
Finding bundleFinding(const ToolPlatform& platform, const char* check, std::string_view path) {
  const auto information = platform::current().bundles->informationAt(std::string(path));
  Finding finding{Level::ok, check, platform.real(std::string(path)), "not installed", ""};
  if (!information) return finding;
  const Text version = textEntry(information, shortVersionKey);
  finding.message = "version " + visibleLine(version.value_or("unknown"));
  if (twoComponents(version.value_or("")).empty()) {
    finding.level = Level::warning;
    finding.message += ": CFBundleShortVersionString must have at least two parts, as in 2.1";
    finding.remedy = "Install it again, with its Contents/Info.plist.";
  }
  return finding;
}

Finding clientFinding() {
  const std::string version = visibleLine(clientVersion());
  return {Level::ok, "printer_log_version", "Version in printer logs",
          version.empty() ? "empty: no bundle version found" : version, ""};
}

Finding decisionFinding(RecordKind kind, std::uint32_t option, const std::string& subject,
                        const std::string& call) {
  const Explanation decision = explain(kind, option);
  const std::string reason(reasonCode(decision));
  if (decision.allowed()) return {Level::ok, "decision", subject, "allowed now", ""};
  // The user may decline: that is not a fault.
  const bool wanted = decision.refusedBy == Gate::agreement;
  return {wanted ? Level::ok : Level::warning, "decision", subject,
          "refused now (" + reason + ")" +
              (decision.unanswered.empty() ? "" : ": " + decision.unanswered),
          wanted ? "" : "Run " + call + " to see why."};
}

}  // namespace

void checkVersions(const ToolPlatform& platform, Findings& findings) {
  findings.push_back(osFinding());
  findings.push_back({Level::ok, "library_version", "This library", WENLOLIB_VERSION, ""});
  findings.push_back(bundleFinding(platform, "host_bundle", hostBundlePath));
  findings.push_back(bundleFinding(platform, "installed_bundle", installedBundlePath));
  findings.push_back(clientFinding());
}

void checkDecisions(Findings& findings) {
  for (const std::uint32_t mode : {0U, 1U, 2U}) {
    const std::string number = std::to_string(mode);
    findings.push_back(decisionFinding(RecordKind::application, mode,
                                       "Application usage, mode " + number,
                                       "wenlolib explain app --option " + number));
  }
  findings.push_back(
      decisionFinding(RecordKind::printerLog, 0, "Printer logs", "wenlolib explain printer"));
}

}  // namespace wenlolib::tools
