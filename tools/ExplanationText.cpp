#include "ExplanationText.h"

#include <nlohmann/json.hpp>

#include "VisibleText.h"
#include "base/EnumTable.h"
#include "base/Integer.h"
#include "toolkit/Names.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t width = 80;
constexpr std::size_t detailIndent = 6;
constexpr std::size_t detailWidth = 10;
constexpr std::string_view shortFolder = "QMR";

struct StateNames {
  std::string_view code, text;
  Colour colour;
};

constexpr EnumTable<StepState, StateNames> stateNames({
    {StepState::passed, {"passed", "passed", Colour::good}},
    {StepState::refused, {"refused", "refused", Colour::bad}},
    {StepState::notNeeded, {"not_needed", "not needed", Colour::faint}},
    {StepState::notReached, {"not_reached", "not reached", Colour::faint}},
});

std::string heading(const Explanation& explanation) {
  const std::string option = decimal(explanation.option);
  if (explanation.kind == RecordKind::printerLog) return "Printer log";
  return "Application usage, option " + option + " (mode " +
         decimal(optionMode(explanation.option)) + ")";
}

std::string shortened(const std::string& source, const std::string& folder) {
  const bool within = !folder.empty() && source.starts_with(folder + "/");
  if (!within) return visibleInLine(source);
  return visibleInLine(std::string(shortFolder) + source.substr(folder.size()));
}

/// A line of a step; only a path may be longer than a line, so that it can be copied whole.
std::string detail(const char* name, const std::string& text, bool whole = false) {
  if (text.empty()) return "";
  std::string line = std::string(detailIndent, ' ') + name;
  line.resize(detailIndent + detailWidth, ' ');
  line += text;
  return (whole ? line : wrapped(line, width, detailIndent + detailWidth)) + "\n";
}

/// What was read, expected and found; nothing of a step that was not taken.
std::string details(const Step& step, const std::string& folder) {
  return detail("read", shortened(step.source, folder), true) +
         detail("key", visibleInLine(step.key), true) + detail("expected", step.expected) +
         detail("found", step.found) + detail("remedy", step.remedy);
}

std::string title(const Step& step) {
  return std::string(gateNames[step.gate].title) +
         (step.gate == Gate::preferences && step.reading > 1 ? ", read again" : "");
}

std::string stepText(int number, const Step& step, const Paint& paint, const std::string& folder) {
  constexpr std::size_t stateWidth = 13;
  const StateNames& state = stateNames[step.state];
  return "  " + decimal(number) + "  " + paint(state.colour, state.text) +
         std::string(stateWidth - state.text.size(), ' ') + title(step) + "\n" +
         details(step, folder);
}

}  // namespace

std::string outcomeText(const Explanation& explanation, const Paint& paint) {
  if (explanation.allowed()) return paint(Colour::good, "allowed");
  if (!explanation.unanswered.empty()) {
    return paint(Colour::bad, "refused") + ": " + explanation.unanswered + " (no_answer)";
  }
  const GateNames& names = gateNames[explanation.refusedBy];
  return paint(Colour::bad, "refused") + ": " + std::string(names.title) + " (" +
         std::string(names.reason) + ")";
}

std::string explanationText(const Explanation& explanation, const Paint& paint,
                            const std::string& supportFolder) {
  std::string text = paint(Colour::heading, heading(explanation)) + "\n" +
                     outcomeText(explanation, paint) + "\n\n";
  if (!supportFolder.empty()) {
    text += std::string(shortFolder) + " is " + visibleInLine(supportFolder) + "\n\n";
  }
  int number = 0;
  for (const Step& step : explanation.steps) {
    text += stepText(++number, step, paint, supportFolder);
  }
  return text;
}

std::string explanationJson(const Explanation& explanation) {
  using Json = nlohmann::ordered_json;
  const bool application = explanation.kind == RecordKind::application;
  Json json = {{"record", application ? "application" : "printer"}};
  if (application) {
    json["option"] = explanation.option;
    json["mode"] = optionMode(explanation.option);
  }
  json["allowed"] = explanation.allowed();
  json["reason"] = reasonCode(explanation);
  if (!explanation.unanswered.empty()) json["no_answer"] = explanation.unanswered;
  json["steps"] = Json::array();
  for (const Step& step : explanation.steps) {
    Json one = {{"gate", gateNames[step.gate].code}, {"state", stateNames[step.state].code}};
    if (step.gate == Gate::preferences) one["reading"] = step.reading;
    const std::pair<const char*, const std::string&> texts[] = {{"source", step.source},
                                                                {"key", step.key},
                                                                {"expected", step.expected},
                                                                {"found", step.found},
                                                                {"remedy", step.remedy}};
    for (const auto& [name, value] : texts) {
      if (!value.empty()) one[name] = value;
    }
    json["steps"].push_back(std::move(one));
  }
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace wenlolib::tools
