#include "documents/DocumentText.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/EnumTable.h"
#include "reading/Codes.h"
#include "reading/DateText.h"
#include "reading/Readable.h"
#include "terminal/Format.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

using receiver::Fault;
using receiver::Layout;

constexpr EnumTable<Layout, std::string_view> layouts({
    {Layout::application, "application usage"},
    {Layout::printer, "printer log, newer tag type"},
    {Layout::printerOlderTag, "printer log, older tag type"},
});

constexpr EnumTable<Fault, Condition> faults({
    {Fault::none, Condition::sound},
    {Fault::truncated, Condition::truncated},
    {Fault::damaged, Condition::damaged},
    {Fault::altered, Condition::altered},
    {Fault::repaired, Condition::repaired},
    {Fault::foreign, Condition::foreign},
});

constexpr std::size_t wordColumns = 11;  // the longest word and two blanks

struct ConditionNames {
  std::string_view word;
  Colour colour;
};

constexpr EnumTable<Condition, ConditionNames> conditions({
    {Condition::sound, {"sound", Colour::good}},
    {Condition::truncated, {"truncated", Colour::bad}},
    {Condition::damaged, {"damaged", Colour::bad}},
    {Condition::altered, {"altered", Colour::bad}},
    {Condition::repaired, {"repaired", Colour::doubtful}},
    {Condition::illegible, {"illegible", Colour::doubtful}},
    {Condition::foreign, {"foreign", Colour::bad}},
});

}  // namespace

Condition conditionOf(const receiver::Verdict& verdict) {
  const bool illegible = verdict.fault == Fault::none && !verdict.sound();
  return illegible ? Condition::illegible : faults[verdict.fault];
}

std::string_view wordFor(Condition condition) {
  return conditions[condition].word;
}

Colour colourOf(Condition condition) {
  return conditions[condition].colour;
}

std::string_view description(Layout layout) {
  return layouts[layout];
}

std::string description(const receiver::Verdict& verdict) {
  // Of an empty file and one of another kind, no byte is more wrong than another.
  const bool whole =
      verdict.fault == Fault::foreign || (verdict.fault == Fault::truncated && verdict.offset == 0);
  if (whole && !verdict.explanation.empty()) return verdict.explanation;
  std::string text = fmt::format("at byte {}", groupDigits(verdict.offset));
  if (!verdict.field.empty()) text += ", " + verdict.field;
  if (!verdict.explanation.empty()) text += ": " + verdict.explanation;
  return text;
}

std::string verdictText(const receiver::Verdict& verdict) {
  return fmt::format("{}: {}", wordFor(conditionOf(verdict)), description(verdict));
}

std::string verdictLine(std::string_view path, const receiver::Verdict& verdict,
                        const Style& style) {
  const Condition condition = conditionOf(verdict);
  std::string line(wordFor(condition));
  line.resize(wordColumns, ' ');
  line = style.paint(colourOf(condition), line) + visibleLine(path);
  if (!verdict.sound()) {
    line += ": " + visibleLine(description(verdict));
    if (style.columns > 0) line = wrap(line, style.columns, wordColumns);
  }
  return line + "\n";
}

namespace {

/// The date as it is, and the reader's local time if that differs.
std::string dateText(const std::string& date) {
  const auto moment = momentOf(date);
  std::string shown = visibleLine(date);
  if (!moment) return shown;
  const std::string local = localTime(*moment);
  std::string asLocal = date;
  std::ranges::replace(asLocal, 'T', ' ');
  asLocal.insert(asLocal.find_last_of("+-"), 1, ' ');
  return local == asLocal ? shown : fmt::format("{} (here {})", shown, local);
}

std::string valueText(const receiver::Field& field, const Redaction& redaction,
                      const Paint& paint) {
  if (redaction.hides(field.name)) return paint(Colour::faint, "(redacted)");
  if (field.value.empty()) return paint(Colour::faint, "(empty)");
  const std::string value = redaction(field.value);
  return field.name == "Date" ? dateText(value) : visibleLine(value);
}

std::string paintedVerdict(const receiver::Verdict& verdict, const Paint& paint) {
  const Condition condition = conditionOf(verdict);
  const std::string text = paint(colourOf(condition), wordFor(condition));
  return verdict.sound() ? text : text + ": " + visibleLine(description(verdict));
}

/// The column of names has the same width for all documents, whichever fields could be read.
std::string inNameColumn(std::string name) {
  constexpr std::size_t widest = std::string_view("OSVersion").size();
  name.resize(std::max(name.size(), widest), ' ');
  return name;
}

std::string headerText(std::size_t bytes, const receiver::Report& report,
                       const Redaction& redaction, const Style& style) {
  Table table;
  table.add({inNameColumn("Verdict"), paintedVerdict(redaction(report.verdict), style.paint)});
  table.add({"Size", sizeText(bytes)});
  if (const receiver::Document* const document = redaction.shown(report)) {
    table.add({"Kind", std::string(description(document->layout))});
    for (const receiver::Field& field : document->fields) {
      table.add({field.name, valueText(field, redaction, style.paint)});
    }
    if (const auto cipher = cipherName(document->marker)) {
      table.add({"Cipher", std::string(*cipher)});
      table.add({"Contents", sizeText(document->digits.size() / 2)});
    }
  }
  return table.text(2, style.columns);
}

void appendContents(std::string& out, std::string_view contents, const Paint& paint) {
  const std::string margin = paint(Colour::faint, "  | ");
  const std::string shown = visibleText(contents);
  std::string_view rest = shown;
  out.reserve(out.size() + shown.size() + shown.size() / 8);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find('\n'), rest.size());
    out += margin;
    out += rest.substr(0, end);
    out += '\n';
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

std::string warning(const Style& style) {
  const std::string line = "  " + style.paint(Colour::doubtful, untrustedText);
  return (style.columns > 0 ? wrap(line, style.columns, 2) : line) + "\n";
}

}  // namespace

std::string documentText(std::string_view path, std::size_t bytes, const receiver::Report& report,
                         const std::optional<std::string>& contents, const Redaction& redaction,
                         const Style& style) {
  std::string out = style.paint(Colour::heading, visibleLine(redaction(path))) + "\n";
  out += headerText(bytes, report, redaction, style);
  const receiver::Document* const document = redaction.shown(report);
  if (document != nullptr && !isTrusted(report)) out += warning(style);
  if (contents) {
    appendContents(out, redaction(*contents), style.paint);
  } else if (document != nullptr && document->marker != '\0') {
    const bool dated = !document->value("Date").empty();
    out += dated ? "  The contents cannot be decrypted here.\n"
                 : "  The contents cannot be decrypted: there is no date, and so no key.\n";
  }
  return out + "\n";
}

namespace {

constexpr std::string_view indent = "  ";
constexpr std::size_t mostShown = 2048;
constexpr std::size_t shownOfLong = 512;

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

/// At most the first `length` bytes of `text`, not cut within a character.
std::string_view headOf(std::string_view text, std::size_t length) {
  if (text.size() <= length) return text;
  std::size_t end = length;
  while (end > 1 && isContinuation(text[end])) --end;
  return text.substr(0, end);
}

/// The beginning of `text` that fits on a line. Some characters are spelled out there and take more
/// room than in the document, so the width is measured afterwards.
std::string_view fittingHead(std::string_view text, std::size_t width) {
  std::string_view head = headOf(text, width);
  while (head.size() > 1 && displayWidth(visibleLine(head)) > width) {
    head = headOf(text, head.size() - 1);
  }
  return head;
}

void appendFolded(std::string& out, std::string_view element, std::size_t width) {
  const bool tooLong = element.size() > mostShown;
  std::string_view rest = tooLong ? headOf(element, shownOfLong) : element;
  const std::size_t leftOut = element.size() - rest.size();
  while (!rest.empty()) {
    const std::string_view head = fittingHead(rest, width - indent.size());
    out.append(indent).append(visibleLine(head)).append("\n");
    rest.remove_prefix(head.size());
  }
  if (tooLong) out.append(indent).append("(").append(countText(leftOut, "byte")).append(" more)\n");
}

/// The length of the element that `document` begins with, or of its tag if it has others inside.
std::size_t lengthOfFirst(std::string_view document) {
  std::size_t boundary = document.find("><");
  // An empty element stays on one line.
  const bool emptyElement =
      document.substr(std::min(boundary, document.size())).starts_with("></") &&
      document.substr(0, boundary).find("</") == std::string_view::npos;
  if (emptyElement) boundary = document.find("><", boundary + 1);
  return boundary == std::string_view::npos ? document.size() : boundary + 1;
}

}  // namespace

std::string foldDocument(std::string_view document, std::size_t width) {
  std::string out;
  while (!document.empty()) {
    const std::size_t length = lengthOfFirst(document);
    appendFolded(out, document.substr(0, length), width);
    document.remove_prefix(length);
  }
  return out;
}

}  // namespace wenlolib::tools
