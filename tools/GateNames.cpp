// Names of gates and reasons. Programs go by the codes: they stay as they are.
#include <cstddef>

#include "Explanation.h"

namespace wenlolib::tools {
namespace {

struct Names {
  std::string_view code, title, reason;
};

constexpr Names names[] = {
    {"none", "None", "allowed"},
    {"os_version", "OS version", "os_version_unknown"},
    {"library_version", "Library version", "library_version_unknown"},
    {"support_list", "Support version list", "not_in_support_list"},
    {"mode", "Mode", "mode_refused"},
    {"preferences", "Preference file", "no_preferences"},
    {"installation_date", "Installation date", "no_installation_date"},
    {"period", "Period", "period_over"},
    {"agreement", "Agreement", "no_agreement"},
};

const Names& namesOf(Gate gate) {
  return names[static_cast<std::size_t>(gate)];
}

}  // namespace

std::string_view reasonCode(Gate gate) {
  return namesOf(gate).reason;
}

std::string_view gateCode(Gate gate) {
  return namesOf(gate).code;
}

std::string_view gateTitle(Gate gate) {
  return namesOf(gate).title;
}

}  // namespace wenlolib::tools
