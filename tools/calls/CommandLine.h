/// The command line: its subcommands, and what they share.
#ifndef WENLOLIB_TOOLS_CALLS_COMMANDLINE_H
#define WENLOLIB_TOOLS_CALLS_COMMANDLINE_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

#include "documents/Jobs.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

/// One run of the command.
struct Session {
  std::string root = "/";  // the folder used as "/" (--root)
  int exitStatus = allGood;
  bool exitZero = false;  // --exit-zero: 0 where it would be 1
  bool recorded = false;  // a record was written, whatever becomes of the report on it
};

// Each adds one subcommand to the command line. Its callback does the work and sets the session's
// exit status.
void addVerify(CLI::App& app, Session& session);
void addDecode(CLI::App& app, Session& session);
void addRows(CLI::App& app, Session& session);
void addCollect(CLI::App& app, Session& session);
void addDiff(CLI::App& app, Session& session);
void addExplain(CLI::App& app, Session& session);
void addPreview(CLI::App& app, Session& session);
void addRecord(CLI::App& app, Session& session);
void addDoctor(CLI::App& app, Session& session);
void addInit(CLI::App& app, Session& session);
void addList(CLI::App& app, Session& session);
void addReport(CLI::App& app, Session& session);
void addForget(CLI::App& app, Session& session);
void addPath(CLI::App& app, Session& session);

/// The beginning of `wenlolib --help`. It answers "what do I type?".
[[nodiscard]] std::string firstScreen();

/// Help at 80 columns.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(26); }

  /// Nothing for the first screen, which lists the subcommands itself, with their arguments.
  std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const override;
};

/// Adds `PATH...`, `--files-from FILE`, `-0` and `--jobs N`, for a subcommand that goes through
/// documents. `options` must outlive the command line.
void addDocuments(CLI::App& call, DocumentOptions& options);

/// Throws a CLI::ParseError if no document is named, standard input is named twice, or -0 stands
/// without a list of paths; `lists` if the call writes one.
void checkDocuments(const DocumentOptions& options, bool lists = false);

[[nodiscard]] CLI::ValidationError standardInputTwice();

/// Requires a number from `least` to `most`.
[[nodiscard]] CLI::Validator numberFrom(int least, int most);

/// Requires the kind of record: `app` or `printer`.
void requireKind(CLI::App& call);

/// Adds `--option N`, N from 0 to 4294967295. `text` must outlive the command line.
void addOptionWord(CLI::App& call, std::string& text);

/// The number in a text that `--option` has accepted.
[[nodiscard]] std::uint32_t optionWord(const std::string& text);

}  // namespace wenlolib::tools

#endif
