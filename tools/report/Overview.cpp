#include "report/Overview.h"

#include <algorithm>
#include <tuple>

namespace wenlolib::tools {

void Overview::add(const RecordReading& reading, OwnRecord& record) {
  ++counts_[conditionOf(reading.report.verdict)];
  bytes_ += reading.state.size;
  redaction_.add(Redaction(reading.report));
  const RecordFacts& facts = reading.facts;
  const bool unnamed = facts.deviceId.empty() && facts.serialNumber.empty();
  // No NUL is in any of these texts, so different groups never have the same key.
  std::string key = facts.kind == RecordKind::application ? "a" : unnamed ? "n" : "p";
  key.append(unnamed ? facts.name : facts.deviceId).append(1, '\0').append(facts.serialNumber);
  const auto [place, isNew] =
      numbers_.try_emplace(std::move(key), static_cast<std::uint32_t>(groups_.size()));
  if (isNew) groups_.push_back({facts.kind, unnamed ? facts.name : facts.printer(), {}});
  record.group = place->second;
}

void Overview::complete(const OwnRecords& found) {
  numbers_.clear();
  for (std::size_t i = 0; i < found.records.size(); ++i) {
    groups_[found.records[i].group].members.push_back(i);
  }
  std::ranges::stable_sort(groups_, [](const RecordGroup& a, const RecordGroup& b) {
    return std::tie(a.kind, a.label) < std::tie(b.kind, b.label);
  });
}

}  // namespace wenlolib::tools
