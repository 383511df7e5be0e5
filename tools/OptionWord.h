/// The option word on the command line.
#ifndef WENLOLIB_TOOLS_OPTIONWORD_H
#define WENLOLIB_TOOLS_OPTIONWORD_H

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>

namespace wenlolib::tools {

/// Adds `--option N`, N from 0 to 4294967295. `text` must outlive the command line.
void addOptionWord(CLI::App& call, std::string& text);

/// The number of a text that was let through.
[[nodiscard]] std::uint32_t optionWord(const std::string& text);

}  // namespace wenlolib::tools

#endif
