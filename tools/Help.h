/// The help of the command.
#ifndef WENLOLIB_TOOLS_HELP_H
#define WENLOLIB_TOOLS_HELP_H

#include <CLI/CLI.hpp>
#include <string>

namespace wenlolib::tools {

/// What `wenlolib --help` begins with: an answer to "what do I type".
[[nodiscard]] std::string firstScreen();

/// Help at 80 columns.
class HelpFormatter : public CLI::Formatter {
 public:
  HelpFormatter() { column_width(26); }

  /// The first screen lists the calls itself, with their arguments.
  std::string make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const override;
};

}  // namespace wenlolib::tools

#endif
