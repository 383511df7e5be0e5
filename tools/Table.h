/// Columns that line up.
#ifndef WENLOLIB_TOOLS_TABLE_H
#define WENLOLIB_TOOLS_TABLE_H

#include <cstddef>
#include <string>
#include <vector>

namespace wenlolib::tools {

/// Rows of cells, each column as wide as its widest cell; colours in a cell take no room.
class Table {
 public:
  enum class Align { left, right };

  /// How the columns stand in their place; left where nothing is said.
  explicit Table(std::vector<Align> columns = {}) : columns_(std::move(columns)) {}

  void add(std::vector<std::string> cells) { rows_.push_back(std::move(cells)); }

  /// One line a row, two blanks between columns, none at the end of a line; every line begins with
  /// `indent` blanks. With a `width`, the last column is broken between words to stay within it.
  [[nodiscard]] std::string text(std::size_t indent = 0, std::size_t width = 0) const;

 private:
  [[nodiscard]] std::vector<std::size_t> widths() const;
  [[nodiscard]] std::string padded(const std::string& cell, std::size_t column,
                                   std::size_t width) const;

  std::vector<Align> columns_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace wenlolib::tools

#endif
