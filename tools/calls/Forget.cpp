// `wenlolib forget`: deletes what has been recorded about the user who asks.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

#include "calls/CommandLine.h"
#include "calls/RecordChoice.h"
#include "records/OwnRecords.h"
#include "records/RecordTable.h"
#include "records/Removal.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

struct ForgetOptions {
  Choice choice;
  bool all = false;
  bool identifier = false;
  bool yes = false;

  [[nodiscard]] bool records() const { return all || !choice.everything(); }
};

constexpr auto footer =
    "Shows what would be deleted and asks first; without a terminal it wants --yes.\n"
    "Deletes only documents of this library, sound or not, in the folders that\n"
    "wenlolib path prints and their sub-folders. Follows no link. Says what it left,\n"
    "and why. A record that changes after it was shown is left. --identifier removes\n"
    "the identifier from the configuration file and keeps its other entries; the next\n"
    "record makes another one. Exit status: 0 all of it is deleted, 1 something was\n"
    "left or the answer was no, 2 wrong usage, 3 something could not be read.\n"
    "\n"
    "Examples:\n"
    "  wenlolib forget --all\n"
    "  wenlolib forget --all --identifier --yes\n"
    "  wenlolib forget --until 2025-12-31\n"
    "  wenlolib forget --printer QX200-0004711";

// --- What would go ---

/// What was found, and what is asked of the user.
struct Plan {
  OwnRecords found;
  StoredIdentifier identifier;
  std::uint64_t bytes = 0;

  [[nodiscard]] bool withIdentifier() const { return identifier.state == IdentifierState::stored; }
  [[nodiscard]] bool empty() const { return found.records.empty() && !withIdentifier(); }

  /// "2 records (598 B) and the identifier".
  [[nodiscard]] std::string text() const {
    std::string records =
        fmt::format("{} ({})", countText(found.records.size(), "record"), sizeText(bytes));
    if (!withIdentifier()) return records;
    return found.records.empty() ? "the identifier" : records + " and the identifier";
  }
};

void show(const Plan& plan, const RecordTable& table, Output& output) {
  if (!plan.found.records.empty()) output.write(table.heading());
  readAgain(plan.found, [&](const RecordReading& reading, const OwnRecord& record) {
    output.write(table.row(reading, record.place));
  });
  output.write(table.footing());
  for (const LeftAlone& other : plan.found.others) {
    if (other.unreadable) continue;
    output.write(fmt::format("left: {}: {}\n", visibleLine(plan.found.folder + other.place),
                             visibleLine(other.why)));
  }
  if (plan.withIdentifier()) {
    output.write("The identifier in " + visibleLine(plan.identifier.path) + "\n");
  }
}

// --- Asking ---

/// Whether the user agrees. Says what is missing if nobody can be asked.
bool isConfirmed(const Plan& plan, const ForgetOptions& options, Output& output, int& status) {
  if (options.yes) return true;
  if (!isTerminal(stdin) || !isTerminal(stdout)) {
    output.complain("--yes", "missing, and there is no terminal to ask on, so nothing was deleted");
    status = wrongUsage;
    return false;
  }
  output.write("Delete " + plan.text() + "? [y/N] ");
  output.finish();
  std::string answer;
  std::getline(std::cin, answer);
  if (answer == "y" || answer == "Y" || answer == "yes") return true;
  output.write("Nothing was deleted.\n");
  status = std::max(status, int{notGood});
  return false;
}

// --- Deleting ---

/// Deletes what was shown. Says what is left, and returns whether nothing is.
bool carryOut(const ToolPlatform& platform, const Plan& plan, Output& output) {
  std::uint64_t deleted = 0;
  const auto tell = [&](const std::string& path, const std::string& why) {
    if (!why.empty()) output.complain(path, "left: " + why);
    return why.empty();
  };
  for (const OwnRecord& record : plan.found.records) {
    const std::string why = removeRecord(plan.found.folder, record);
    if (tell(plan.found.folder + record.place, why)) ++deleted;
  }
  bool good = deleted == plan.found.records.size();
  if (!plan.found.records.empty()) {
    output.write("deleted: " + countText(deleted, "record") + "\n");
  }
  if (!plan.withIdentifier()) return good;
  const bool gone = tell(plan.identifier.path, removeIdentifier(platform));
  if (gone) output.write("deleted: the identifier; the next record makes another one\n");
  return good && gone;
}

/// Returns whether the identifier can be removed, if that was asked for.
bool planIdentifier(const ToolPlatform& platform, Plan& plan, Output& output) {
  plan.identifier = findIdentifier(platform);
  if (plan.identifier.state != IdentifierState::kept) return true;
  output.complain(plan.identifier.path, "left: " + plan.identifier.why);
  return false;
}

int forget(const ToolPlatform& platform, const ForgetOptions& options) {
  Output output("forget");
  RecordTable table({output.paint(), output.columns()}, platform.realSupportFolder() + "/");
  Plan plan;
  int status = allGood;
  if (options.records()) {
    plan.found = findRecords(platform, options.choice, output,
                             [&](const RecordReading& reading, const OwnRecord& record) {
                               table.measure(reading, record.place);
                               plan.bytes += reading.state.size;
                             });
    status = complainOfUnreadable(plan.found, output);
  }
  if (options.identifier && !planIdentifier(platform, plan, output)) {
    status = std::max(status, int{notGood});
  }
  show(plan, table, output);
  if (plan.empty()) {
    output.write("There is nothing to delete.\n");
  } else if (isConfirmed(plan, options, output, status) && !carryOut(platform, plan, output)) {
    status = std::max(status, int{notGood});
  }
  output.finish();
  return status;
}

}  // namespace

void addForget(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ForgetOptions>();
  CLI::App& call = *app.add_subcommand("forget", "Delete what has been recorded about you");
  call.add_flag("--all", options->all, "All records");
  addRecordChoice(call, options->choice);
  call.add_flag("--identifier", options->identifier, "The identifier that all records carry");
  call.add_flag("--yes", options->yes, "Delete without asking");
  call.footer(footer);
  call.callback([options, &session] {
    if (options->all && !options->choice.everything()) {
      throw CLI::ValidationError("--all", "cannot be used with a choice of records");
    }
    if (!options->records() && !options->identifier) {
      throw CLI::RequiredError("forget: --all, a choice of records or --identifier");
    }
    const ToolPlatform platform(session.root);
    const platform::Substitute substitute(platform.services());
    session.exitStatus = forget(platform, *options);
  });
}

}  // namespace wenlolib::tools
