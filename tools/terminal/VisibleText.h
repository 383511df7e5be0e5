/// Text on a terminal: made visible, measured, broken into lines, set in columns.
#ifndef WENLOLIB_TOOLS_TERMINAL_VISIBLETEXT_H
#define WENLOLIB_TOOLS_TERMINAL_VISIBLETEXT_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace wenlolib::tools {

/// The text with everything that could steer a terminal or hide something spelled out: \x1B for
/// control characters and bytes that are not UTF-8, \u{202E} for controls of the writing direction,
/// other invisible characters and those that are not assigned. Line breaks and tabs stay.
[[nodiscard]] std::string visibleText(std::string_view text);

/// The same for a text that must stay on one line: \n and \t are spelled out as well.
[[nodiscard]] std::string visibleLine(std::string_view text);

/// How many columns a terminal takes for the text. Colours and combining marks take none, most East
/// Asian characters and pictures two.
[[nodiscard]] std::size_t displayWidth(std::string_view text);

/// The text broken between words, so that no line is wider than `width`; all lines but the first
/// begin with `indent` blanks. A word that is too long stays whole.
[[nodiscard]] std::string wrap(std::string_view text, std::size_t width, std::size_t indent);

/// Rows of cells, each column as wide as its widest cell; colours in a cell take no room.
class Table {
 public:
  enum class Align { left, right };

  /// How the columns are aligned; to the left by default.
  explicit Table(std::vector<Align> columns = {}) : columns_(std::move(columns)) {}

  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

  /// One line for each row, two blanks between columns, none at the end of a line; every line
  /// begins with `indent` blanks. With a `width`, the last column is broken between words to stay
  /// within it.
  [[nodiscard]] std::string text(std::size_t indent = 0, std::size_t width = 0) const;

 private:
  [[nodiscard]] std::vector<std::size_t> widths() const;
  [[nodiscard]] std::string pad(const std::string& cell, std::size_t column,
                                std::size_t width) const;

  std::vector<Align> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace wenlolib::tools

#endif
