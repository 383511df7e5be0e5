#include "calls/RecordChoice.h"

#include <chrono>
#include <cmath>
#include <string>

#include "explain/Replay.h"

namespace wenlolib::tools {
namespace {

std::time_t momentIn(const char* option, const std::string& text) {
  const std::optional<Instant> instant = dateFromText(text);
  if (instant) return static_cast<std::time_t>(std::floor(instant->time_since_epoch().count()));
  throw CLI::ValidationError(option,
                             text + " is not a date such as 2026-11-21 or 2026-11-21T09:30:00");
}

/// The first moment after a date, which may be a whole day.
std::time_t momentAfter(const char* option, const std::string& text) {
  const std::time_t moment = momentIn(option, text);
  if (text.find(':') != std::string::npos) return moment + 1;
  std::tm day{};
  localtime_r(&moment, &day);
  ++day.tm_mday;
  day.tm_isdst = -1;
  return std::mktime(&day);
}

void checkOrder(const Choice& choice) {
  if (choice.since && choice.before && *choice.since >= *choice.before) {
    throw CLI::ValidationError("--since", "later than --until: they are the wrong way round");
  }
}

RecordKind kindIn(const std::string& text) {
  if (text == "app") return RecordKind::application;
  if (text == "printer") return RecordKind::printerLog;
  throw CLI::ValidationError("--kind", text + " is not a kind of record; give app or printer");
}

}  // namespace

void addRecordChoice(CLI::App& call, Choice& choice) {
  const auto add = [&](const char* option, const char* type, const char* description,
                       const std::function<void(const std::string&)>& set) {
    call.add_option_function<std::string>(option, set, description)->type_name(type);
  };
  add("--since", "DATE", "Only records from this date on, such as 2026-11-21",
      [&choice](const std::string& text) {
        choice.since = momentIn("--since", text);
        checkOrder(choice);
      });
  add("--until", "DATE", "Only records up to this date, all of the day included",
      [&choice](const std::string& text) {
        choice.before = momentAfter("--until", text);
        checkOrder(choice);
      });
  add("--kind", "KIND", "Only application usage (app) or printer logs (printer)",
      [&choice](const std::string& text) { choice.kind = kindIn(text); });
  add("--printer", "TEXT", "Only printer logs of a device or name with TEXT in it",
      [&choice](const std::string& text) {
        if (text.empty()) throw CLI::ValidationError("--printer", "the text is empty");
        choice.printer = text;
      });
}

}  // namespace wenlolib::tools
