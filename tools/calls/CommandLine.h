/// The command line: its calls, and what they share.
#ifndef WENLOLIB_TOOLS_CALLS_COMMANDLINE_H
#define WENLOLIB_TOOLS_CALLS_COMMANDLINE_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "terminal/Output.h"

namespace wenlolib::tools {

/// One run of the command.
struct Session {
  std::string root = "/";  // the folder taken for "/" (--root)
  int exitStatus = allGood;
};

// Each adds one subcommand to the command line. Its callback does the work and sets the session's
// exit status.
void addVerify(CLI::App& app, Session& session);
void addDecode(CLI::App& app, Session& session);
void addDiff(CLI::App& app, Session& session);
void addExplain(CLI::App& app, Session& session);
void addPreview(CLI::App& app, Session& session);
void addRecord(CLI::App& app, Session& session);
void addDoctor(CLI::App& app, Session& session);
void addInit(CLI::App& app, Session& session);

/// What `wenlolib --help` begins with: an answer to "what do I type".
[[nodiscard]] std::string firstScreen();

/// Help at 80 columns.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(26); }

  /// The first screen lists the calls itself, with their arguments.
  std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const override;
};

/// Adds `PATH...` and `--jobs N`, for a call that goes through documents.
void addDocuments(CLI::App& call, std::vector<std::string>& paths, int& jobs);

/// Makes a call say which kind of record it means, by one of its two subcommands.
void requireKind(CLI::App& call);

/// Adds `--option N`, N from 0 to 4294967295. `text` must outlive the command line.
void addOptionWord(CLI::App& call, std::string& text);

/// The number of a text that was let through.
[[nodiscard]] std::uint32_t optionWord(const std::string& text);

}  // namespace wenlolib::tools

#endif
