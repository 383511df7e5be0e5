/// What the command says about a wrong command line.
#ifndef WENLOLIB_TOOLS_CALLS_USAGE_H
#define WENLOLIB_TOOLS_CALLS_USAGE_H

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace wenlolib::tools {

/// What is wrong, what may have been meant, and the call whose help says more.
[[nodiscard]] std::string usageText(const CLI::App& app, const CLI::ParseError& error);

/// Refuses "--json=true", which the parser accepts. `words` are those of the command line.
void refuseFlagValues(CLI::App& app, const std::vector<std::string>& words);

/// The words of `words` that is nearest to `word`, or "" if none is near.
[[nodiscard]] std::string nearestWord(std::string_view word, const std::vector<std::string>& words);

/// Adds `wenlolib help [SUBCOMMAND...]`.
void addHelp(CLI::App& app);

}  // namespace wenlolib::tools

#endif
