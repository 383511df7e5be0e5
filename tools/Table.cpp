#include "Table.h"

#include <algorithm>

#include "VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t gap = 2;

void trimEnd(std::string& line) {
  line.erase(line.find_last_not_of(' ') + 1);
}

}  // namespace

std::vector<std::size_t> Table::widths() const {
  std::vector<std::size_t> widths;
  for (const auto& row : rows_) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(row[i]));
    }
  }
  return widths;
}

std::string Table::padded(const std::string& cell, std::size_t column, std::size_t width) const {
  const std::string blanks(width - displayWidth(cell), ' ');
  const bool right = column < columns_.size() && columns_[column] == Align::right;
  return right ? blanks + cell : cell + blanks;
}

std::string Table::text(std::size_t indent, std::size_t width) const {
  const std::vector<std::size_t> columnWidths = widths();
  std::string all;
  for (const auto& row : rows_) {
    std::string line(indent, ' ');
    std::size_t place = indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
      const bool last = i + 1 == columnWidths.size();
      if (last && width > place && displayWidth(row[i]) > width - place) {
        // Lines behind the first are indented to where the column begins.
        const std::string blanks(place, ' ');
        line += wrapped(blanks + row[i], width, place).substr(place);
      } else {
        line += padded(row[i], i, columnWidths[i]) + std::string(gap, ' ');
      }
      place += columnWidths[i] + gap;
    }
    trimEnd(line);
    all += line + '\n';
  }
  return all;
}

}  // namespace wenlolib::tools
