#include "terminal/VisibleText.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>
#include <iterator>

namespace wenlolib::tools {
namespace {

struct Character {
  utf8proc_int32_t code;
  std::size_t bytes;
  bool valid;  // else `code` is the byte's own value
};

/// The first character of a text that is not empty.
Character firstOf(std::string_view text) {
  const auto* const bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  utf8proc_int32_t code = 0;
  const auto length = utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size()), &code);
  if (length <= 0) return {*bytes, 1, false};
  return {code, static_cast<std::size_t>(length), true};
}

/// Control characters, invisible ones, and those without a shape that everybody knows.
bool isHidden(const Character& character) {
  if (!character.valid) return true;
  switch (utf8proc_category(character.code)) {
    case UTF8PROC_CATEGORY_CC:  // controls
    case UTF8PROC_CATEGORY_CF:  // controls of the writing direction and other format characters
    case UTF8PROC_CATEGORY_CN:  // not assigned
    case UTF8PROC_CATEGORY_CO:  // for private use
    case UTF8PROC_CATEGORY_ZL:  // line and paragraph separators
    case UTF8PROC_CATEGORY_ZP:
      return true;
    default:
      return false;
  }
}

bool isPlain(char c) {
  return c >= ' ' && c <= '~';
}

void appendVisible(std::string& out, const Character& character, std::string_view bytes) {
  if (!isHidden(character)) {
    out += bytes;
  } else if (!character.valid || character.code < 0x80) {
    out += fmt::format("\\x{:02X}", character.code);
  } else {
    out += fmt::format("\\u{{{:04X}}}", character.code);
  }
}

/// What follows the escape sequence of a colour that `text` begins with; all of it without one.
std::string_view afterColour(std::string_view text) {
  if (!text.starts_with("\x1B[")) return text;
  const std::size_t end = text.find('m');
  return end == std::string_view::npos ? text : text.substr(end + 1);
}

}  // namespace

std::string visibleText(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(std::distance(
        text.begin(), std::ranges::find_if_not(
                          text, [](char c) { return isPlain(c) || c == '\n' || c == '\t'; })));
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Character character = firstOf(text);
    appendVisible(out, character, text.substr(0, character.bytes));
    text.remove_prefix(character.bytes);
  }
  return out;
}

std::string visibleLine(std::string_view text) {
  if (std::ranges::all_of(text, isPlain)) return std::string(text);
  std::string out;
  for (const char c : visibleText(text)) {
    if (c == '\n') {
      out += "\\n";
    } else if (c == '\t') {
      out += "\\t";
    } else {
      out += c;
    }
  }
  return out;
}

std::size_t displayWidth(std::string_view text) {
  std::size_t columns = 0;
  while (!text.empty()) {
    const std::string_view rest = afterColour(text);
    if (rest.size() < text.size()) {
      text = rest;
      continue;
    }
    const Character character = firstOf(text);
    columns +=
        isHidden(character) ? 1 : static_cast<std::size_t>(utf8proc_charwidth(character.code));
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::string wrap(std::string_view text, std::size_t width, std::size_t indent) {
  std::string out;
  std::size_t column = 0;
  while (!text.empty()) {
    // Blanks belong to the word after them; a new line drops them.
    const std::size_t word = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find(' ', word), text.size());
    const std::size_t columns = displayWidth(text.substr(0, end));
    if (column > indent && column + columns > width) {
      out += '\n' + std::string(indent, ' ');
      text.remove_prefix(word);
      column = indent;
      continue;
    }
    out += text.substr(0, end);
    column += columns;
    text.remove_prefix(end);
  }
  return out;
}

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

std::string Table::pad(const std::string& cell, std::size_t column, std::size_t width) const {
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
        // Lines after the first are indented to the start of the column.
        const std::string blanks(place, ' ');
        line += wrap(blanks + row[i], width, place).substr(place);
      } else {
        line += pad(row[i], i, columnWidths[i]) + std::string(gap, ' ');
      }
      place += columnWidths[i] + gap;
    }
    trimEnd(line);
    all += line + '\n';
  }
  return all;
}

}  // namespace wenlolib::tools
