#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <variant>

#include "Checks.h"
#include "Require.h"
#include "Shown.h"
#include "base/Utf8.h"
#include "documents/Comparison.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "reading/Readable.h"
#include "reading/Row.h"

namespace wenlolib::fuzz {
namespace {

using receiver::Report;

void checkText(std::string_view bytes, const Report& report,
               const std::optional<std::string>& contents, const Redaction& redaction) {
  for (const std::size_t columns : {std::size_t{0}, std::size_t{80}}) {
    const std::string text = tools::documentText(path, bytes.size(), report, contents, redaction,
                                                 {tools::Paint(false), columns});
    require(isUtf8(text) && steersNothing(text), "text for a terminal is harmless");
    require(text.ends_with("\n\n"), "a document's text ends in an empty line");
  }
}

void checkJson(std::string_view bytes, const Report& report,
               const std::optional<std::string>& contents) {
  const std::string line = tools::documentJson(path, bytes.size(), report, contents, {});
  require(line.find('\n') == line.size() - 1, "JSON is one line");
  const Json object = Json::parse(line);
  require(object["sound"] == report.verdict.sound(), "JSON says whether it is sound");
  require(textIn(object, "path") == path, "JSON gives the path back");
  require(textIn(object, "contents") == contents, "JSON gives the contents back");
  require(object["trusted"] == isTrusted(report), "JSON says what is vouched for");
  require(object["fields"].is_object() == (readable(report) != nullptr), "JSON has the fields");
  if (!report.document) return;
  require(object["fields"].size() == report.document->fields.size(), "JSON has every field");
  require(textIn(object["fields"], "version") == report.document->value("Version"),
          "JSON gives values back");
}

std::string lowered(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

/// Nothing that is taken from the document may repeat a hidden value. Values that the mark in their
/// place could itself produce are not checked.
void checkHidden(const Json& object, std::string value) {
  if (value.starts_with('{') && value.ends_with('}') && value.size() > 2) {
    value = value.substr(1, value.size() - 2);
  }
  value = lowered(value);
  const bool own = value.find_first_of("[]") != std::string::npos ||
                   std::string_view("redacted").find(value) != std::string_view::npos;
  if (value.size() < 4 || own) return;
  const auto hidden = [&](const std::optional<std::string>& text) {
    return !text || lowered(*text).find(value) == std::string::npos;
  };
  require(hidden(textIn(object, "contents")), "the contents do not hold what is redacted");
  for (const auto& [name, unused] : object["fields"].items()) {
    if (!name.ends_with("_hex")) {
      require(hidden(textIn(object["fields"], name)), "the fields do not hold what is redacted");
    }
  }
}

void checkRedacted(std::string_view bytes, const Report& report) {
  const Redaction redaction(report);
  const receiver::Document* const shown = redaction.shown(report);
  const std::optional<std::string> contents =
      shown == nullptr ? std::nullopt : receiver::contentsOf(*shown);
  checkText(bytes, report, contents, redaction);
  const Json object =
      Json::parse(tools::documentJson(path, bytes.size(), report, contents, redaction));
  require(object["fields"].is_object() == (shown != nullptr), "what may be shown is shown");
  if (shown == nullptr) return;
  require(object["fields"]["id"].is_null(), "no identifier");
  checkHidden(object, std::string(shown->value("ID")));
  checkHidden(object, std::string(shown->value("SN")));
}

/// The changes between the two halves of a text, applied to the first, give the second.
void checkDifference(std::string_view text) {
  const tools::Lines a = tools::linesOf(text.substr(0, text.size() / 2));
  const tools::Lines b = tools::linesOf(text.substr(text.size() / 2));
  const std::vector<tools::Change> changes = tools::changesBetween(a, b, 200);
  tools::Lines made;
  std::size_t at = 0;
  for (const tools::Change& change : changes) {
    require(at <= change.aBegin && change.aEnd <= a.size() && change.bEnd <= b.size(),
            "the changes are in order");
    made.insert(made.end(), a.begin() + static_cast<std::ptrdiff_t>(at),
                a.begin() + static_cast<std::ptrdiff_t>(change.aBegin));
    made.insert(made.end(), b.begin() + static_cast<std::ptrdiff_t>(change.bBegin),
                b.begin() + static_cast<std::ptrdiff_t>(change.bEnd));
    at = change.aEnd;
  }
  made.insert(made.end(), a.begin() + static_cast<std::ptrdiff_t>(at), a.end());
  require(made == b, "the changes lead from the one to the other");
  require(steersNothing(tools::unifiedText(a, b, changes, tools::Paint(false))),
          "a difference is harmless on a terminal");
}

/// Every text in a row is UTF-8 without U+0000, also if something must not be shown.
void checkRow(std::string_view bytes, const Report& report) {
  for (const Redaction& redaction : {Redaction(), Redaction(report)}) {
    const Row row = rowOf({std::string(path), ""}, bytes, report, redaction);
    for (const Column column : enumerators<Column>) {
      const auto* const text = std::get_if<std::string>(&row[column]);
      if (text == nullptr) continue;
      require(isUtf8(*text) && text->find('\0') == std::string::npos, "a row's texts are plain");
      require(traits(column).type == ColumnType::text, "a column has one type");
    }
    require(std::get<bool>(row[Column::trusted]) <= isTrusted(report), "a row trusts no more");
  }
}

}  // namespace

void checkShown(std::string_view bytes, const Report& report) {
  const receiver::Document* const document = readable(report);
  const std::optional<std::string> contents =
      document == nullptr ? std::nullopt : receiver::contentsOf(*document);
  checkShownVerdict(bytes, report.verdict);
  checkText(bytes, report, contents, {});
  checkJson(bytes, report, contents);
  checkRedacted(bytes, report);
  checkRow(bytes, report);
  if (contents) checkDifference(*contents);
  if (document == nullptr) return;
  const tools::Side side{report, contents};
  const tools::Comparison comparison = tools::compare(side, side);
  require(comparison.same(), "a document compares as the same as itself");
  require(Json::parse(tools::comparisonJson("a", "b", side, side, comparison))["same"] == true,
          "and in JSON too");
}

}  // namespace wenlolib::fuzz
