#include "collect/Collection.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "base/EnumTable.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

constexpr std::int64_t ourMark = 0x574C4942;  // PRAGMA application_id
constexpr std::int64_t ourVersion = 1;        // PRAGMA user_version
constexpr std::uint64_t batch = 5000;

constexpr EnumTable<ColumnType, std::string_view> sqlTypes({
    {ColumnType::integer, "BIGINT"},
    {ColumnType::truth, "BOOLEAN"},
    {ColumnType::text, "TEXT"},
});

constexpr auto otherTables = R"(
CREATE UNIQUE INDEX documents_by_digest ON documents (sha256);
CREATE TABLE sources (path TEXT PRIMARY KEY, size BIGINT, modified BIGINT, inode BIGINT);
CREATE VIEW jobs_by_printer_and_month AS
  SELECT coalesce(nullif(sn, ''), name) AS printer, max(device_id) AS device,
    substr(date_utc, 1, 7) AS month, count(*) AS documents
  FROM documents WHERE layout LIKE 'printer%' AND trusted
  GROUP BY 1, 3 ORDER BY 1, 3;
CREATE VIEW broken_by_printer AS
  SELECT coalesce(nullif(sn, ''), name, source) AS printer, fault, layer, count(*) AS documents,
    max(source) AS example
  FROM documents WHERE NOT (layer = 'none' OR fault = 'repaired')
  GROUP BY 1, 2, 3 ORDER BY documents DESC, 1;
CREATE VIEW versions AS
  SELECT layout, version, os_version, count(*) AS documents, count(DISTINCT id) AS installations
  FROM documents WHERE trusted GROUP BY 1, 2, 3 ORDER BY 1, 2, 3;
CREATE VIEW applications_by_month AS
  SELECT name AS application, substr(date_utc, 1, 7) AS month, count(*) AS documents,
    count(DISTINCT id) AS installations
  FROM documents WHERE layout = 'application' AND trusted GROUP BY 1, 2 ORDER BY 1, 2;
CREATE VIEW faults AS
  SELECT fault, layer, count(*) AS documents FROM documents GROUP BY 1, 2 ORDER BY 3 DESC;
)";

std::string columnList(std::string_view separator, bool types) {
  std::string list;
  for (const Column column : enumerators<Column>) {
    if (!list.empty()) list += separator;
    list += traits(column).name;
    if (types) list.append(" ").append(sqlTypes[traits(column).type]);
  }
  return list;
}

std::string insertSql() {
  std::string marks = "?";
  for (std::size_t i = 1; i < enumerators<Column>.size(); ++i) marks += ",?";
  return "INSERT OR IGNORE INTO documents (" + columnList(",", false) + ") VALUES (" + marks + ")";
}

void bindCell(Statement& statement, int parameter, const Cell& cell) {
  if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
    statement.bind(parameter, *number);
  } else if (const auto* const truth = std::get_if<bool>(&cell)) {
    statement.bind(parameter, std::int64_t{*truth ? 1 : 0});
  } else if (const auto* const text = std::get_if<std::string>(&cell)) {
    statement.bind(parameter, std::string_view(*text));
  } else {
    statement.bindNull(parameter);
  }
}

/// Without the device, whose number can differ each time that it is mounted, and without the time
/// of the last change of owner, links or name.
void bindState(Statement& statement, int first, const FileState& state) {
  statement.bind(first, static_cast<std::int64_t>(state.size));
  statement.bind(first + 1, state.modified);
  statement.bind(first + 2, static_cast<std::int64_t>(state.number));
}

}  // namespace

// --- The database ---

Collection::Collection(const std::string& path, bool make, Database::Waiting waiting)
    : database_(path, make) {
  database_.whileBusy(std::move(waiting));
  if (make) prepare();
  if (database_.number("PRAGMA application_id") != ourMark) {
    throw DatabaseError("not a database of wenlolib collect; name another file");
  }
  if (database_.number("PRAGMA user_version") != ourVersion) {
    throw DatabaseError("made by another version of wenlolib; collect into a new file");
  }
  if (make) database_.run("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
  find_.emplace(database_,
                "SELECT 1 FROM sources WHERE path = ? AND size = ? AND modified = ? AND inode = ?");
  insert_.emplace(database_, insertSql());
  finish_.emplace(database_, "INSERT OR REPLACE INTO sources VALUES (?, ?, ?, ?)");
}

/// Makes the tables in a file without any.
void Collection::prepare() {
  database_.run("BEGIN IMMEDIATE");
  const bool fresh = database_.number("SELECT count(*) FROM sqlite_schema") == 0 &&
                     database_.number("PRAGMA application_id") == 0;
  if (fresh) {
    database_.run("CREATE TABLE documents (" + columnList(", ", true) + ");" + otherTables);
    database_.run(
        fmt::format("PRAGMA application_id = {}; PRAGMA user_version = {}", ourMark, ourVersion));
  }
  database_.run("COMMIT");
}

void Collection::begin() {
  if (!begun_) database_.run("BEGIN IMMEDIATE");
  begun_ = true;
  if (++pending_ < batch) return;
  commit();
  begin();
}

void Collection::commit() {
  if (begun_) database_.run("COMMIT");
  begun_ = false;
  pending_ = 0;
}

bool Collection::hasRead(const std::string& path, const FileState& state) {
  find_->bind(0, std::string_view(path));
  bindState(*find_, 1, state);
  const bool found = find_->step();
  find_->reset();
  return found;
}

void Collection::add(const Row& row) {
  begin();
  for (const Column column : enumerators<Column>) {
    bindCell(*insert_, static_cast<int>(column), row[column]);
  }
  insert_->run();
  added_ += static_cast<std::uint64_t>(database_.changes());
}

void Collection::finish(const std::string& path, const FileState& state) {
  begin();
  finish_->bind(0, std::string_view(path));
  bindState(*finish_, 1, state);
  finish_->run();
}

std::uint64_t Collection::documents() const {
  return static_cast<std::uint64_t>(database_.number("SELECT count(*) FROM documents"));
}

// --- Questions ---

namespace {

struct Question {
  std::string_view view;  // that answers it
  std::string_view title;
};

constexpr Question questions[] = {
    {"jobs_by_printer_and_month", "Printer logs by printer and month"},
    {"applications_by_month", "Application usage by month"},
    {"versions", "Versions in use"},
    {"faults", "Documents by fault"},
    {"broken_by_printer", "Documents that are not sound, by printer"},
};

using Line = std::vector<std::string>;

std::vector<Line> linesOf(const Database& database, std::string_view view) {
  Statement statement(database, fmt::format("SELECT * FROM {}", view));
  std::vector<Line> lines(1);
  for (int i = 0; i < statement.columns(); ++i) lines[0].emplace_back(statement.nameOf(i));
  while (statement.step()) {
    Line& line = lines.emplace_back();
    for (int i = 0; i < statement.columns(); ++i) {
      line.push_back(visibleLine(statement.text(i).value_or("-")));
    }
  }
  return lines;
}

std::string tableText(const std::vector<Line>& lines) {
  std::vector<std::size_t> widths(lines[0].size(), 0);
  for (const Line& line : lines) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      widths[i] = std::max(widths[i], displayWidth(line[i]));
    }
  }
  std::string text;
  for (const Line& line : lines) {
    std::string row;
    for (std::size_t i = 0; i < line.size(); ++i) {
      row += "  " + line[i] + std::string(widths[i] - displayWidth(line[i]), ' ');
    }
    text += row.substr(0, row.find_last_not_of(' ') + 1) + "\n";
  }
  return text;
}

}  // namespace

std::string Collection::answersText() const {
  std::string text;
  for (const Question& question : questions) {
    const std::vector<Line> lines = linesOf(database_, question.view);
    text += fmt::format("{}{} ({})\n", text.empty() ? "" : "\n", question.title, question.view);
    text += lines.size() == 1 ? "  none\n" : tableText(lines);
  }
  return text;
}

}  // namespace wenlolib::tools
