// `wenlolib list` and `wenlolib path`: what has been recorded about the user who asks, and where.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <map>
#include <memory>
#include <system_error>
#include <utility>

#include "calls/CommandLine.h"
#include "calls/RecordChoice.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "reading/Readable.h"
#include "records/OwnRecords.h"
#include "records/RecordTable.h"
#include "terminal/Format.h"
#include "terminal/Pager.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

struct ListOptions {
  Choice choice;
  bool json = false;
  bool contents = false;
};

/// The document as `decode` shows it.
std::string wholeText(const RecordReading& reading, const std::string& path, const Style& style) {
  const receiver::Document* const document = readable(reading.report);
  const auto contents = document == nullptr ? std::nullopt : receiver::contentsOf(*document);
  return documentText(path, reading.state.size, reading.report, contents, Redaction(), style);
}

std::string countsText(const OwnRecords& found, const Choice& choice, std::size_t columns) {
  std::string text =
      found.records.empty() ? "No records" : countText(found.records.size(), "record");
  if (!choice.everything()) text += found.records.size() == 1 ? " matches" : " match";
  text += ".";
  std::map<std::pair<std::string, bool>, std::uint64_t> others;
  for (const LeftAlone& other : found.others) ++others[{other.why, other.folder}];
  const char* before = " Not shown: ";
  for (const auto& [other, count] : others) {
    const auto& [why, folder] = other;
    text += before + countText(count, folder ? "folder" : "file") + " (" + why + ")";
    before = ", ";
  }
  if (!others.empty()) text += ".";
  return wrap(text, columns == 0 ? 80 : columns, 0) + "\n";
}

void writeAll(const OwnRecords& found, const RecordTable& table, const ListOptions& options,
              const Style& style, Output& output) {
  const bool rows = !options.json && !options.contents;
  if (rows && !found.records.empty()) output.write(table.heading());
  readAgain(found, [&](const RecordReading& reading, const OwnRecord& record) {
    const std::string path = found.folder + record.place;
    if (options.json) {
      output.write(recordJson(reading, path, options.contents));
    } else {
      output.write(rows ? table.row(reading, record.place) : wholeText(reading, path, style));
    }
  });
  if (options.json) {
    for (const LeftAlone& other : found.others) {
      if (other.unreadable) output.write(unreadableJson(found.folder + other.place, other.why));
    }
    return;
  }
  if (rows) output.write(table.footing());
  output.write(countsText(found, options.choice, style.columns));
}

/// A user who leaves the pager has seen enough.
void writePaged(const OwnRecords& found, const RecordTable& table, const ListOptions& options,
                const Style& style, Output& output) {
  Pager pager;
  try {
    writeAll(found, table, options, style, output);
    output.finish();
  } catch (const std::system_error& failure) {
    if (!pager.active() || failure.code() != std::errc::broken_pipe) throw;
  }
  if (pager.close()) return;
  output.complain("PAGER", "it could not be run; the list is shown without it");
  writeAll(found, table, options, style, output);
  output.finish();
}

int list(const ToolPlatform& platform, const ListOptions& options) {
  Output output("list");
  const Style style = output.style();
  RecordTable table(style, platform.realSupportFolder() + "/");
  const OwnRecords found = findRecords(platform, options.choice, output,
                                       [&](const RecordReading& reading, const OwnRecord& record) {
                                         table.measure(reading, record.place);
                                       });
  const int status = complainOfUnreadable(found, output);
  if (!found.folder.empty()) writePaged(found, table, options, style, output);
  return status;
}

int path(const ToolPlatform& platform) {
  Output output("path");
  const std::vector<std::string> folders = recordFolders(platform);
  for (const std::string& folder : folders) output.write(folder + "\n");
  output.finish();
  return folders.empty() ? complainOfUnreadable({}, output) : int{allGood};
}

}  // namespace

void addList(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ListOptions>();
  CLI::App& call = *app.add_subcommand("list", "Show what has been recorded about you");
  addRecordChoice(call, options->choice);
  call.add_flag("--json", options->json, "One JSON object for each record, on its own line");
  call.add_flag("--contents", options->contents, "Show each record whole, with its contents");
  call.footer(
      "Reads the folders in which the library records for the user who runs it, and\n"
      "their sub-folders; wenlolib path prints them. Newest first, in local time. On a\n"
      "terminal through $PAGER or less. Exit status: 0 listed, 2 wrong usage,\n"
      "3 something could not be read.\n\nExamples:\n"
      "  wenlolib list\n"
      "  wenlolib list --since 2026-11-01 --kind printer\n"
      "  wenlolib list --printer QX200 --contents\n"
      "  wenlolib list --json | jq -r 'select(.sound | not) | .path'");
  call.callback([options, &session] {
    const ToolPlatform platform(session.root);
    const platform::Substitute substitute(platform.services());
    session.exitStatus = list(platform, *options);
  });
}

void addPath(CLI::App& app, Session& session) {
  CLI::App& call = *app.add_subcommand("path", "Print the folders of your records");
  call.footer(
      "The folder of printer logs and that of application usage, one a line, whether\n"
      "they exist or not. Exit status: 0 printed, 2 wrong usage, 3 the home folder is\n"
      "not known.\n\nExample:\n"
      "  wenlolib path | tr '\\n' '\\0' | du -ch --files0-from=-");
  call.callback([&session] {
    const ToolPlatform platform(session.root);
    const platform::Substitute substitute(platform.services());
    session.exitStatus = path(platform);
  });
}

}  // namespace wenlolib::tools
