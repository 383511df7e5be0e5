#include "terminal/VisibleText.h"

#include <algorithm>
#include <iterator>

#include "base/Utf8.h"
#include "terminal/Format.h"

namespace wenlolib::tools {
namespace {

struct Character {
  char32_t code;
  std::size_t bytes;
  bool valid;  // else `code` is the byte's own value
};

struct Range {
  char32_t first;
  char32_t last;
};

constexpr Range invisible[] = {{0x80, 0x9F},     {0xAD, 0xAD},     {0x61C, 0x61C},
                               {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},
                               {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
constexpr Range withoutWidth[] = {{0x300, 0x36F}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}};
constexpr Range twoColumns[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},
                                {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
                                {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                                {0x1F680, 0x1F6FF}, {0x1F900, 0x1FAFF}, {0x20000, 0x3FFFD}};

template <std::size_t size>
bool within(char32_t code, const Range (&ranges)[size]) {
  return std::ranges::any_of(
      ranges, [&](const Range& range) { return code >= range.first && code <= range.last; });
}

std::size_t lengthByLead(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

/// The first character of a text that is not empty.
Character firstOf(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t bytes = lengthByLead(lead);
  if (!isUtf8(text.substr(0, bytes))) return {lead, 1, false};
  if (bytes == 1) return {lead, 1, true};
  char32_t code = lead & (0x7Fu >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
  }
  return {code, bytes, true};
}

bool isPlain(char c) {
  return c >= ' ' && c <= '~';
}

void appendVisible(std::string& out, const Character& character, std::string_view bytes) {
  if (!character.valid || character.code < ' ' || character.code == 0x7F) {
    out += "\\x" + hexadecimal(character.code, 2);
  } else if (within(character.code, invisible)) {
    out += "\\u{" + hexadecimal(character.code, 4) + "}";
  } else {
    out += bytes;
  }
}

/// What is left of `text` behind an escape sequence for colours, if it begins with one.
std::string_view behindColour(std::string_view text) {
  if (!text.starts_with("\x1B[")) return text;
  const std::size_t end = text.find('m');
  return end == std::string_view::npos ? text : text.substr(end + 1);
}

}  // namespace

std::string visible(std::string_view text) {
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

std::string visibleInLine(std::string_view text) {
  if (std::ranges::all_of(text, isPlain)) return std::string(text);
  std::string out;
  for (const char c : visible(text)) {
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
    const std::string_view rest = behindColour(text);
    if (rest.size() < text.size()) {
      text = rest;
      continue;
    }
    const Character character = firstOf(text);
    if (within(character.code, twoColumns)) {
      columns += 2;
    } else if (!within(character.code, withoutWidth)) {
      columns += 1;
    }
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::string wrapped(std::string_view text, std::size_t width, std::size_t indent) {
  std::string out;
  std::size_t column = 0;
  while (!text.empty()) {
    // A word takes the blanks before it along; a line does not begin with them.
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
