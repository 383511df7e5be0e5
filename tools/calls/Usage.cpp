#include "calls/Usage.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <numeric>

#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

using Words = std::vector<std::string>;

/// How many letters have to be added, left out or changed.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> rows(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  std::iota(rows[0].begin(), rows[0].end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    rows[i][0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t changed = rows[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
      rows[i][j] = std::min({changed, rows[i - 1][j] + 1, rows[i][j - 1] + 1});
    }
  }
  return rows[a.size()][b.size()];
}

/// The letters of an option without its hyphens and its value.
std::string_view letters(std::string_view word) {
  word.remove_prefix(std::min(word.find_first_not_of('-'), word.size()));
  return word.substr(0, word.find('='));
}

}  // namespace

std::string nearestWord(std::string_view word, const Words& words) {
  constexpr std::size_t longest = 40;
  const std::string_view typed = letters(word);
  if (typed.size() < 2 || typed.size() > longest) return "";
  std::string nearest;
  std::size_t least = typed.size() / 3 + 1;
  for (const std::string& known : words) {
    const bool begun = typed.size() > 2 && letters(known).starts_with(typed);
    const std::size_t away = begun ? 1 : distance(typed, letters(known));
    if (away > least || (away == least && !nearest.empty())) continue;
    nearest = known;
    least = away;
  }
  return nearest;
}

namespace {

/// The subcommand that was being read: the innermost.
const CLI::App& innermost(const CLI::App& app) {
  const CLI::App* found = &app;
  while (!found->get_subcommands().empty()) found = found->get_subcommands().back();
  return *found;
}

/// Its whole name, such as "wenlolib record app".
std::string wholeName(const CLI::App& call) {
  const CLI::App* parent = call.get_parent();
  return parent == nullptr ? call.get_name() : wholeName(*parent) + " " + call.get_name();
}

Words subcommandsOf(const CLI::App& call) {
  Words names;
  for (const CLI::App* one : call.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(one->get_name());
  }
  return names;
}

/// The long options that a subcommand takes, with those that every subcommand takes.
Words optionsOf(const CLI::App& call) {
  Words names;
  for (const CLI::App* one = &call; one != nullptr; one = one->get_parent()) {
    for (const CLI::Option* option : one->get_options()) {
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    }
  }
  return names;
}

bool takesNoValue(const CLI::App& call, const std::string& name) {
  const CLI::Option* option = call.get_option_no_throw(name);
  if (option != nullptr) return option->get_items_expected_max() == 0;
  return call.get_parent() != nullptr && takesNoValue(*call.get_parent(), name);
}

std::string withSuggestion(const std::string& text, const std::string& nearest) {
  return nearest.empty() ? text : text + ". Did you mean " + nearest + "?";
}

bool isOption(const std::string& word) {
  return word.size() > 1 && word.front() == '-';
}

/// Names the first word that has no meaning in its place; options first, since the words after a
/// mistyped option are seldom wrong.
std::string extraWordText(const CLI::App& call, const Words& words) {
  const auto option = std::ranges::find_if(words, isOption);
  if (option != words.end()) {
    return withSuggestion(visibleLine(*option) + ": no such option here",
                          nearestWord(*option, optionsOf(call)));
  }
  const std::string word = words.empty() ? "" : words.front();
  const Words names = subcommandsOf(call);
  if (names.empty()) return visibleLine(word) + ": one argument too many";
  const char* what = call.get_parent() == nullptr ? "no such subcommand"
                                                  : "not a kind of record; give app or printer";
  return withSuggestion(fmt::format("{}: {}", visibleLine(word), what), nearestWord(word, names));
}

/// The parser's own sentences, in which the name stands before a fixed text or after it.
struct Rewording {
  std::string_view theirs;
  std::string_view ours;
};

constexpr Rewording rewordings[] = {
    {": At Most 1 required but received", " can be given only once"},
    {" excludes ", " cannot be used with "},
    {" requires ", " can be used only with "},
};

/// "Could not convert: --clean = maybe", from the parser: the command's own options with values
/// have checks of their own, so this is a flag.
constexpr std::string_view flagWithValue = "Could not convert: ";

std::string reworded(const std::string& text) {
  if (text.starts_with(flagWithValue)) {
    const std::string option = text.substr(flagWithValue.size());
    return option.substr(0, option.find(" = ")) + " takes no value";
  }
  for (const auto& [theirs, ours] : rewordings) {
    const std::size_t at = text.find(theirs);
    if (at == text.npos) continue;
    const bool more = ours.ends_with(' ');
    return text.substr(0, at).append(ours) + (more ? text.substr(at + theirs.size()) : "");
  }
  return text;
}

/// "--name: 1 required TEXT missing", from the parser.
std::string missingValueText(const std::string& text) {
  const std::size_t end = text.find(": ");
  const std::size_t type = text.find(" required ");
  if (end == text.npos || type == text.npos || !text.ends_with(" missing")) return reworded(text);
  const std::size_t from = type + std::string_view(" required ").size();
  const std::size_t length = text.size() - from - std::string_view(" missing").size();
  return text.substr(0, end) + " needs a value: " + text.substr(from, length);
}

std::string complaint(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& call = innermost(app);
  const Words extra = app.remaining(true);
  const bool mistyped = std::ranges::any_of(extra, isOption);
  if (mistyped || dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr) {
    return extraWordText(call, extra);
  }
  const std::string text = error.what();
  const bool mismatch = dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr;
  const bool own = dynamic_cast<const CLI::ValidationError*>(&error) != nullptr;
  return visibleLine(mismatch ? missingValueText(text) : own ? text : reworded(text));
}

}  // namespace

void refuseFlagValues(CLI::App& app, const Words& words) {
  app.parse_complete_callback([&app, words] {
    for (const std::string& word : words) {
      if (word == "--") return;
      const std::string name = word.substr(0, word.find('='));
      if (name != word && name.starts_with("--") && takesNoValue(innermost(app), name)) {
        throw CLI::ValidationError(name + " takes no value");
      }
    }
  });
}

std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& call = innermost(app);
  return fmt::format("wenlolib: {}\nTry {} --help.\n", complaint(app, error), wholeName(call));
}

namespace {

/// The subcommand that the words name, from the outermost on.
const CLI::App& named(const CLI::App& app, const Words& words) {
  const CLI::App* found = &app;
  for (const std::string& word : words) {
    const Words names = subcommandsOf(*found);
    if (std::ranges::find(names, word) == names.end()) {
      throw CLI::ValidationError(
          withSuggestion(word + ": no such subcommand", nearestWord(word, names)));
    }
    found = found->get_subcommand(word);
  }
  return *found;
}

}  // namespace

void addHelp(CLI::App& app) {
  const auto words = std::make_shared<Words>();
  CLI::App& call = *app.add_subcommand("help", "Show the help of a subcommand");
  call.add_option("SUBCOMMAND", *words, "Such as verify, or record app")->type_name("");
  call.footer("Examples:\n  wenlolib help verify\n  wenlolib help record app");
  call.callback([&app, words] {
    const CLI::App& found = named(app, *words);
    // Not help(), which is that of the subcommand on the command line: of this one.
    std::fputs(found.get_formatter()
                   ->make_help(&found, wholeName(found), CLI::AppFormatMode::Normal)
                   .c_str(),
               stdout);
  });
}

}  // namespace wenlolib::tools
