#include "records/RecordTable.h"

#include <algorithm>
#include <numeric>

#include "base/EnumTable.h"
#include "documents/DocumentJson.h"
#include "library/Wording.h"
#include "reading/Readable.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr EnumTable<RecordKind, std::string_view> kinds({
    {RecordKind::application, "application"},
    {RecordKind::printerLog, "printer log"},
});

constexpr std::size_t gap = 2;
constexpr std::size_t widestText = 40;  // of a name or printer on a terminal
constexpr std::size_t narrowestText = 8;

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// A visible text cut to `width` columns, with "..." in place of what is cut off.
std::string shortened(std::string_view text, std::size_t width) {
  constexpr std::string_view dots = "...";
  std::size_t columns = 0;
  std::size_t fitting = 0;  // bytes that leave room for the dots
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t end = begin + 1;
    while (end < text.size() && isContinuation(text[end])) ++end;
    columns += displayWidth(text.substr(begin, end - begin));
    if (columns > width) return std::string(text.substr(0, fitting)).append(dots);
    if (columns + dots.size() <= width) fitting = end;
    begin = end;
  }
  return std::string(text);
}

std::string padded(const std::string& cell, std::size_t width, bool right = false) {
  const std::size_t columns = displayWidth(cell);
  const std::string blanks(width > columns ? width - columns : 0, ' ');
  return right ? blanks + cell : cell + blanks;
}

void trimEnd(std::string& text) {
  text.erase(text.find_last_not_of(' ') + 1);
}

}  // namespace

std::string_view kindText(RecordKind kind) {
  return kinds[kind];
}

std::string minuteText(std::time_t date) {
  constexpr std::size_t secondsAndOffset = std::string_view(":00 +00:00").size();
  const std::string text = localTime(date);
  return text.front() == '(' ? text : text.substr(0, text.size() - secondsAndOffset);
}

// --- The table ---

namespace {

/// Made visible and cut; "-" for an empty text. No `width` for a text that stays whole.
std::string cellText(std::string text, std::optional<std::size_t> width) {
  if (text.empty()) return "-";
  if (!width) return visibleLine(text);
  // What is longer than this many bytes is cut anyway, and making it visible takes time.
  text.resize(std::min(text.size(), 8 * *width));
  return shortened(visibleLine(text), *width);
}

/// If there is not enough room for model and serial number, the model is cut.
std::string printerText(const RecordFacts& facts, std::optional<std::size_t> width) {
  const std::string whole = facts.printer();
  const std::string_view serial = facts.serialNumber;
  if (!width || serial.size() > *width || serial.size() == whole.size()) {
    return cellText(whole, width);
  }
  const std::string tail = " " + visibleLine(serial);
  const std::size_t taken = displayWidth(tail);
  if (serial.empty() || taken + narrowestText > *width) return cellText(whole, width);
  return cellText(whole.substr(0, whole.size() - serial.size() - 1), *width - taken) + tail;
}

}  // namespace

RecordTable::Cells RecordTable::cellsOf(const RecordReading& reading,
                                        std::optional<std::size_t> printerWidth) const {
  const RecordFacts& facts = reading.facts;
  return {minuteText(facts.date) + (facts.dated ? "" : "~"),
          std::string(kindText(facts.kind)),
          cellText(facts.name, widestCell()),
          printerText(facts, printerWidth),
          sizeText(reading.state.size),
          std::string(wordFor(conditionOf(reading.report.verdict)))};
}

void RecordTable::measure(const RecordReading& reading, std::string_view place) {
  const Cells cells = cellsOf(reading, widestCell());
  for (std::size_t i = 0; i < cellCount; ++i) {
    widths_[i] = std::max(widths_[i], std::min(displayWidth(cells[i]), widestText));
  }
  pathWidth_ = std::max(pathWidth_, displayWidth(pathText(place)));
  undated_ = undated_ || !reading.facts.dated;
}

std::string RecordTable::pathText(std::string_view place) const {
  const std::string folder = folder_.substr(0, folder_.size() - 1);
  const std::string path = std::string(folder_).append(place);
  return shortPath(path, style_.columns > 0 ? folder : "");
}

std::optional<std::size_t> RecordTable::widestCell() const {
  return style_.columns == 0 ? std::nullopt : std::optional(widestText);
}

/// Of all columns except the path.
std::size_t RecordTable::lineWidth() const {
  return std::accumulate(widths_.begin(), widths_.end(), (cellCount - 1) * gap);
}

bool RecordTable::oneLine() const {
  return style_.columns == 0 || lineWidth() + gap + pathWidth_ <= style_.columns;
}

/// The path is on a line of its own; name and printer may be cut.
bool RecordTable::twoLines() const {
  return lineWidth() - widths_[name] - widths_[printer] + 2 * narrowestText <= style_.columns;
}

std::array<std::size_t, RecordTable::cellCount> RecordTable::widths() const {
  std::array<std::size_t, cellCount> fitting = widths_;
  if (oneLine() || lineWidth() <= style_.columns) return fitting;
  const std::size_t others = lineWidth() - widths_[name] - widths_[printer];
  const std::size_t room = style_.columns - others;
  const std::size_t half = room / 2;
  fitting[name] = std::min(widths_[name], std::max(half, room - std::min(room, widths_[printer])));
  fitting[printer] = room - fitting[name];
  return fitting;
}

std::string RecordTable::line(const Cells& cells, Colour colour) const {
  const std::array<std::size_t, cellCount> fitting = widths();
  std::string text;
  for (std::size_t i = 0; i < cellCount; ++i) {
    const std::string whole = style_.columns == 0 ? cells[i] : shortened(cells[i], fitting[i]);
    const std::string cell = padded(whole, fitting[i], i == size);
    text += (i == verdict ? style_.paint(colour, cell) : cell) + std::string(gap, ' ');
  }
  return text;
}

/// For a narrow terminal.
std::string RecordTable::block(const Cells& cells, Colour colour, std::string_view path) const {
  const std::string indent(gap, ' ');
  const std::string who = cells[printer] == "-" ? cells[name] : cells[name] + ", " + cells[printer];
  return cells[date] + indent + cells[kind] + "\n" + indent + shortened(who, style_.columns - gap) +
         "\n" + indent + style_.paint(colour, cells[verdict]) + ", " + cells[size] + "\n" + indent +
         std::string(path) + "\n";
}

std::string RecordTable::heading() const {
  const std::string folder = folder_.substr(0, folder_.size() - 1);
  std::string where = style_.columns > 0 ? shortFolderText(folder) : "";
  if (!oneLine() && !twoLines()) return where;
  std::string titles =
      line({"Date", "Kind", "Name", "Printer", "Size", "Verdict"}, Colour::heading);
  if (oneLine()) titles += "Path";
  trimEnd(titles);
  return where + style_.paint(Colour::heading, titles) + "\n";
}

std::string RecordTable::row(const RecordReading& reading, std::string_view place) const {
  const bool cut = !oneLine() && twoLines();
  const Cells cells = cellsOf(reading, cut ? widths()[printer] : widestCell());
  const Colour colour = colourOf(conditionOf(reading.report.verdict));
  const std::string path = pathText(place);
  if (oneLine()) return line(cells, colour) + path + "\n";
  if (!twoLines()) return block(cells, colour, path);
  std::string text = line(cells, colour);
  trimEnd(text);
  return text + "\n" + std::string(gap, ' ') + path + "\n";
}

std::string RecordTable::footing() const {
  if (!undated_) return "";
  return wrap("~ The document's date cannot be read; this is the date of its file.",
              style_.columns == 0 ? 80 : style_.columns, gap) +
         "\n";
}

// --- JSON ---

namespace {

/// "2026-11-22T16:25:07+09:00".
std::string isoText(std::time_t date) {
  std::string text = localTime(date);
  std::erase(text, ' ');
  const std::size_t clock = text.find(':');
  if (clock != std::string::npos && clock > 2) text.insert(clock - 2, 1, 'T');
  return text;
}

}  // namespace

std::string recordJson(const RecordReading& reading, const std::string& path, bool contents) {
  const RecordFacts& facts = reading.facts;
  const receiver::Verdict& verdict = reading.report.verdict;
  Json record = jsonObject("record");
  putVerdict(record, path, reading.state.size, verdict);
  record["date"] = isoText(facts.date);
  record["date_of"] = facts.dated ? "document" : "file";
  record["record"] = recordCode(facts.kind);
  put(record, "name", std::string_view(facts.name));
  put(record, "device_id", std::string_view(facts.deviceId));
  put(record, "sn", std::string_view(facts.serialNumber));
  const receiver::Document* const document = readable(reading.report);
  const bool asked = contents && document != nullptr;
  record["trusted"] = isTrusted(reading.report);
  put(record, "contents", asked ? receiver::contentsOf(*document) : std::nullopt);
  return jsonLine(record);
}

}  // namespace wenlolib::tools
