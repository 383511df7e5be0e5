#include "DocumentText.h"

#include <algorithm>

#include "Format.h"
#include "Table.h"
#include "Verdicts.h"
#include "VisibleText.h"

namespace wenlolib::tools {
namespace {

/// The date as it stands, and what the reader's own clock showed then, where that is another time.
std::string dateText(const std::string& date) {
  const auto moment = momentOf(date);
  std::string shown = visibleInLine(date);
  if (!moment) return shown;
  const std::string local = localTime(*moment);
  std::string asLocal = date;
  std::ranges::replace(asLocal, 'T', ' ');
  asLocal.insert(asLocal.find_last_of("+-"), " ");
  return local == asLocal ? shown : shown + " (here " + local + ")";
}

std::string valueText(const receiver::Field& field, const Redaction& redaction,
                      const Paint& paint) {
  if (redaction.hides(field.name)) return paint(Colour::faint, "(redacted)");
  if (field.value.empty()) return paint(Colour::faint, "(empty)");
  const std::string value = redaction(field.value);
  return field.name == "Date" ? dateText(value) : visibleInLine(value);
}

std::string verdictText(const receiver::Verdict& verdict, const Paint& paint) {
  const Condition condition = conditionOf(verdict);
  const std::string text = paint(colourOf(condition), word(condition));
  return verdict.sound() ? text : text + ": " + visibleInLine(description(verdict));
}

/// All documents have the names of their values in a column of the same width, whatever is known.
std::string inNameColumn(std::string name) {
  constexpr std::size_t widest = std::string_view("OSVersion").size();
  name.resize(std::max(name.size(), widest), ' ');
  return name;
}

std::string headerText(std::size_t bytes, const receiver::Report& report,
                       const Redaction& redaction, const Style& style) {
  Table table;
  table.add({inNameColumn("Verdict"), verdictText(redaction(report.verdict), style.paint)});
  table.add({"Size", sizeText(bytes)});
  if (report.document) {
    const receiver::Document& document = *report.document;
    table.add({"Kind", std::string(description(document.layout))});
    for (const receiver::Field& field : document.fields) {
      table.add({field.name, valueText(field, redaction, style.paint)});
    }
    table.add({"Cipher", std::string(cipherName(document.marker))});
    table.add({"Contents", sizeText(document.digits.size() / 2)});
  }
  return table.text(2, style.columns);
}

void appendContents(std::string& out, std::string_view contents, const Paint& paint) {
  const std::string margin = paint(Colour::faint, "  | ");
  const std::string shown = visible(contents);
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

}  // namespace

std::string documentText(std::string_view path, std::size_t bytes, const receiver::Report& report,
                         const std::optional<std::string>& contents, const Redaction& redaction,
                         const Style& style) {
  std::string out = style.paint(Colour::heading, visibleInLine(redaction(path))) + "\n";
  out += headerText(bytes, report, redaction, style);
  if (contents) {
    appendContents(out, redaction(*contents), style.paint);
  } else if (report.document) {
    const bool dated = !report.document->value("Date").empty();
    out += dated ? "  The contents cannot be decrypted here.\n"
                 : "  The contents cannot be decrypted: there is no date, and so no key.\n";
  }
  return out + "\n";
}

}  // namespace wenlolib::tools
