// `wenlolib forget`: deletes what has been recorded about the user who asks.
#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <csignal>
#include <iostream>
#include <memory>
#include <string_view>
#include <system_error>

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
    "and why: a record that changes after it was shown, and what may be one of those\n"
    "meant, such as an unfinished file. --all also names the files that are not\n"
    "records. --identifier removes the identifier from the configuration file and\n"
    "keeps its other entries; the next record makes another one. Exit status: 0 all\n"
    "of it is deleted, 1 something was left or the answer was no, 2 wrong usage,\n"
    "3 something could not be read.\n"
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

/// Other files in the folders: all of them, or only those that may have been meant.
void showOthers(const Plan& plan, bool all, Output& output, int& status) {
  for (const LeftAlone& other : plan.found.others) {
    if (other.unreadable || (!all && !other.perhapsChosen)) continue;
    if (other.perhapsChosen) status = std::max(status, int{notGood});
    output.write(fmt::format("{}: {}: {}\n", other.perhapsChosen ? "left" : "not a record",
                             visibleLine(plan.found.folder + other.place), visibleLine(other.why)));
  }
}

void show(const Plan& plan, const RecordTable& table, bool all, Output& output, int& status) {
  if (!plan.found.records.empty()) output.write(table.heading());
  readAgain(plan.found, [&](const RecordReading& reading, const OwnRecord& record) {
    output.write(table.row(reading, record.place));
  });
  output.write(table.footing());
  showOthers(plan, all, output, status);
  if (plan.withIdentifier()) {
    output.write("The identifier in " + visibleLine(plan.identifier.path) + "\n");
  }
}

// --- Asking ---

/// Ends the process by the signal, as its parent expects. Takes no lock and no memory.
void endWithoutAnswer(int signal) {
  constexpr std::string_view told = "\nNothing was deleted.\n";
  [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, told.data(), told.size());
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// A line from the terminal. An interrupt ends the run.
std::string answerTo(const std::string& question, Output& output) {
  constexpr std::array signals = {SIGINT, SIGTERM};
  std::array<void (*)(int), signals.size()> before{};
  for (std::size_t i = 0; i < signals.size(); ++i) {
    before[i] = std::signal(signals[i], endWithoutAnswer);
    if (before[i] == SIG_IGN) std::signal(signals[i], SIG_IGN);
  }
  output.write(question);
  output.finish();
  std::string answer;
  // Without a line break after the answer, what follows would stand on its line.
  if (!std::getline(std::cin, answer) || std::cin.eof()) output.write("\n");
  for (std::size_t i = 0; i < signals.size(); ++i) std::signal(signals[i], before[i]);
  return answer;
}

/// Whether the user agrees. Says what is missing if nobody can be asked.
bool isConfirmed(const Plan& plan, const ForgetOptions& options, Output& output, int& status) {
  if (options.yes) return true;
  if (!isTerminal(stdin) || !isTerminal(stdout)) {
    output.complain("--yes", "missing, and there is no terminal to ask on, so nothing was deleted");
    status = wrongUsage;
    return false;
  }
  const std::string answer = answerTo("Delete " + plan.text() + "? [y/N] ", output);
  if (answer == "y" || answer == "Y" || answer == "yes") return true;
  output.write("Nothing was deleted.\n");
  status = std::max(status, int{notGood});
  return false;
}

// --- Deleting ---

struct Deleted {
  std::uint64_t records = 0;
  bool identifier = false;

  [[nodiscard]] std::string text() const {
    return countText(records, "record") + (identifier ? " and the identifier" : "");
  }
};

/// Deletes what was shown and counts it. Says what is left, and returns whether nothing is.
bool carryOut(const ToolPlatform& platform, const Plan& plan, Output& output, Deleted& deleted) {
  const auto tell = [&](const std::string& path, const std::string& why) {
    if (!why.empty()) output.complain(path, "left: " + why);
    return why.empty();
  };
  for (const OwnRecord& record : plan.found.records) {
    const std::string why = removeRecord(plan.found.folder, record);
    if (tell(plan.found.folder + record.place, why)) ++deleted.records;
  }
  const bool good = deleted.records == plan.found.records.size();
  if (!plan.found.records.empty()) output.write("deleted: " + deleted.text() + "\n");
  if (!plan.withIdentifier()) return good;
  deleted.identifier = tell(plan.identifier.path, removeIdentifier(platform));
  if (deleted.identifier)
    output.write("deleted: the identifier; the next record makes another one\n");
  return good && deleted.identifier;
}

/// Deletes, and returns the exit status. Says what is gone even if that cannot be printed.
int carryOutAndTell(const ToolPlatform& platform, const Plan& plan, Output& output) {
  Deleted deleted;
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const bool good = carryOut(platform, plan, output, deleted);
    output.finish();
    return good ? allGood : notGood;
  } catch (const std::system_error& failure) {
    Output("forget").complain(
        platform.realSupportFolder(),
        "deleted " + deleted.text() + ", but not reported: " + failure.what());
    return unreadable;
  }
}

/// Returns the exit status that goes with an identifier that cannot be removed.
int planIdentifier(const ToolPlatform& platform, Plan& plan, Output& output) {
  plan.identifier = findIdentifier(platform);
  if (plan.identifier.state != IdentifierState::kept) return allGood;
  output.complain(plan.identifier.path, "left: " + plan.identifier.why);
  return plan.identifier.unreadable ? unreadable : notGood;
}

std::string_view nothingDeletedText(int status) {
  if (status == unreadable) return "Nothing was deleted; something could not be read.\n";
  return status == allGood ? "There is nothing to delete.\n" : "Nothing was deleted.\n";
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
  if (options.identifier) status = std::max(status, planIdentifier(platform, plan, output));
  show(plan, table, options.all, output, status);
  if (plan.empty()) {
    output.write(nothingDeletedText(status));
  } else if (isConfirmed(plan, options, output, status)) {
    status = std::max(status, carryOutAndTell(platform, plan, output));
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
