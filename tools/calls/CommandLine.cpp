#include "calls/CommandLine.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>

namespace wenlolib::tools {

std::string firstScreen() {
  return R"(wenlolib: see, verify and explain what WENLOLIB records.

Receiving documents:
  wenlolib verify PATH...           are these documents sound? (folders too)
  wenlolib decode PATH...           what do they say?
  wenlolib rows PATH...             the same as rows: JSON Lines or CSV
  wenlolib collect PATH... --into DB
                                    the rows in a database; --show asks it
  wenlolib diff A B                 what differs between two documents?

Recording:
  wenlolib explain app --option 1   is a record allowed now? if not, why?
  wenlolib explain printer
  wenlolib preview app --name N     the exact document that a record would write
  wenlolib record app --name N --option 2 FILE
                                    record FILE's contents (- is standard input)
  wenlolib record printer --name N --sn S FILE

What is recorded about you:
  wenlolib list                     what is there, newest first
  wenlolib report FILE.html         the same as a page, with what is allowed now
  wenlolib forget --all             delete it
  wenlolib path                     the folders that it lies in

The installation:
  wenlolib doctor                   is it healthy? if not, what to do?
  wenlolib init                     make the folders that a host provides

  wenlolib help SUBCOMMAND          more about a subcommand, with examples

Exit status: 0 all is well, 1 something is not, 2 wrong usage, 3 something
could not be read. --exit-zero makes 1 a 0, for pipelines.
)";
}

std::string HelpFormatter::make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const {
  return app->get_parent() == nullptr ? "" : CLI::Formatter::make_subcommands(app, mode);
}

void addDocuments(CLI::App& call, DocumentOptions& options) {
  call.add_option("PATH", options.paths, "Documents or folders of them; - is standard input")
      ->type_name("");
  call.add_option("--files-from", options.pathsFrom,
                  "Also the paths in FILE, one a line; - as above")
      ->type_name("FILE");
  call.add_flag("--null,-0", options.nul, "Paths end in NUL instead of a line break");
  call.add_option("--jobs,-j", options.jobs, "Work on N documents at a time (default 1)")
      ->type_name("N")
      ->check(numberFrom(1, mostJobs));
}

CLI::Validator numberFrom(int least, int most) {
  const auto complaint = [least, most](const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    const bool fits = error == std::errc() && stop == end && number >= least && number <= most;
    return fits ? "" : fmt::format("{} is not a number from {} to {}", text, least, most);
  };
  return {complaint, ""};
}

void checkDocuments(const DocumentOptions& options, bool lists) {
  if (options.paths.empty() && options.pathsFrom.empty()) throw CLI::RequiredError("PATH");
  if (options.nul && options.pathsFrom.empty() && !lists) {
    throw CLI::ValidationError("--null", "needs --files-from");
  }
  const auto named = std::ranges::count(options.paths, "-") + (options.pathsFrom == "-" ? 1 : 0);
  if (named > 1) throw standardInputTwice();
}

CLI::ValidationError standardInputTwice() {
  return CLI::ValidationError("-", "standard input can be read only once");
}

void requireKind(CLI::App& call) {
  call.require_subcommand(0, 1);
  call.callback([&call] {
    if (call.get_subcommands().empty())
      throw CLI::ValidationError(call.get_name(), "name the kind of record, app or printer");
  });
}

namespace {

std::optional<std::uint32_t> numberIn(const std::string& text) {
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

std::string complaint(const std::string& text) {
  return numberIn(text)
             ? ""
             : text + " is not an option word; give a decimal number from 0 to 4294967295";
}

}  // namespace

void addOptionWord(CLI::App& call, std::string& text) {
  call.add_option("--option", text, "The option word; its low four bits are the mode")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Validator(complaint, ""));
}

std::uint32_t optionWord(const std::string& text) {
  return numberIn(text).value_or(0);
}

}  // namespace wenlolib::tools
