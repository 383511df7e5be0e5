#include "collect/Database.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "reading/InputFile.h"

namespace wenlolib::tools {

// --- Statements ---

void Statement::check(int result) const {
  if (result != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_));
}

Statement::Statement(const Database& database, std::string_view sql)
    : connection_(database.connection()) {
  sqlite3_stmt* statement = nullptr;
  const int length = static_cast<int>(sql.size());
  const int result = sqlite3_prepare_v2(connection_, sql.data(), length, &statement, nullptr);
  statement_.reset(statement);
  check(result);
}

void Statement::bindNull(int parameter) {
  check(sqlite3_bind_null(statement_.get(), parameter + 1));
}

void Statement::bind(int parameter, std::int64_t number) {
  check(sqlite3_bind_int64(statement_.get(), parameter + 1, number));
}

void Statement::bind(int parameter, std::string_view text) {
  check(sqlite3_bind_text64(statement_.get(), parameter + 1, text.data(), text.size(),
                            SQLITE_STATIC, SQLITE_UTF8));
}

bool Statement::step() {
  const int result = sqlite3_step(statement_.get());
  if (result == SQLITE_ROW) return true;
  if (result != SQLITE_DONE) check(result);
  return false;
}

void Statement::run() {
  while (step()) {
  }
  reset();
}

void Statement::reset() {
  check(sqlite3_reset(statement_.get()));
}

int Statement::columns() const {
  return sqlite3_column_count(statement_.get());
}

std::string_view Statement::nameOf(int column) const {
  const char* const name = sqlite3_column_name(statement_.get(), column);
  return name == nullptr ? "" : name;
}

std::optional<std::string_view> Statement::text(int column) const {
  const auto* const text =
      reinterpret_cast<const char*>(sqlite3_column_text(statement_.get(), column));
  if (text == nullptr) return std::nullopt;
  return std::string_view(text,
                          static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)));
}

std::int64_t Statement::number(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

// --- Connections ---

namespace {

/// SQLite would make the file as open as the user's mask lets it.
void makeFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0) throw DatabaseError(systemMessage(errno));
  close(file);
}

}  // namespace

Database::Database(const std::string& path, bool make) {
  if (make) makeFile(path);
  sqlite3* connection = nullptr;
  // To SQLite, ":memory:" is not a file, and neither is "".
  const std::string file = path.starts_with('/') ? path : "./" + path;
  const int result = sqlite3_open_v2(file.c_str(), &connection, SQLITE_OPEN_READWRITE, nullptr);
  connection_.reset(connection);
  if (result != SQLITE_OK) {
    throw DatabaseError(connection == nullptr ? "no memory" : sqlite3_errmsg(connection));
  }
}

int Database::callWaiting(void* database, int /*times*/) {
  constexpr int fiftyMilliseconds = 50;
  if (!static_cast<Database*>(database)->waiting_()) return 0;
  sqlite3_sleep(fiftyMilliseconds);
  return 1;
}

void Database::whileBusy(Waiting waiting) {
  waiting_ = std::move(waiting);
  sqlite3_busy_handler(connection_.get(), callWaiting, this);
}

void Database::run(const std::string& sql) {
  const int result = sqlite3_exec(connection_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) throw DatabaseError(sqlite3_errmsg(connection_.get()));
}

std::int64_t Database::number(std::string_view sql) const {
  Statement statement(*this, sql);
  return statement.step() ? statement.number(0) : 0;
}

}  // namespace wenlolib::tools
