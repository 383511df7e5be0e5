/// SQLite with its answers looked at: every failure is an exception that says what and where.
#ifndef WENLOLIB_TOOLS_COLLECT_DATABASE_H
#define WENLOLIB_TOOLS_COLLECT_DATABASE_H

#include <sqlite3.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace wenlolib::tools {

/// What SQLite said.
class DatabaseError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class Database;

/// A prepared statement. Parameters and columns are counted from 0.
class Statement {
 public:
  Statement(const Database& database, std::string_view sql);

  void bindNull(int parameter);
  void bind(int parameter, std::int64_t number);
  /// The text must stay as it is until the statement is reset.
  void bind(int parameter, std::string_view text);

  /// True at a row, false at the end.
  bool step();

  /// Takes all steps, and makes the statement ready for other values.
  void run();
  void reset();

  [[nodiscard]] int columns() const;
  [[nodiscard]] std::string_view nameOf(int column) const;
  /// As text, whatever its type; nothing for null.
  [[nodiscard]] std::optional<std::string_view> text(int column) const;
  [[nodiscard]] std::int64_t number(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };

  void check(int result) const;

  sqlite3* connection_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// A connection to a database file. It belongs to one thread.
class Database {
 public:
  /// Opens the file, or makes it, for its owner alone.
  explicit Database(const std::string& path, bool make);

  /// Called again and again while another process writes; false gives up.
  using Waiting = std::function<bool()>;
  void whileBusy(Waiting waiting);

  void run(const std::string& sql);
  [[nodiscard]] std::int64_t number(std::string_view sql) const;
  /// How many rows the last statement changed.
  [[nodiscard]] int changes() const { return sqlite3_changes(connection_.get()); }
  [[nodiscard]] sqlite3* connection() const { return connection_.get(); }

 private:
  struct Close {
    void operator()(sqlite3* connection) const { sqlite3_close(connection); }
  };

  static int callWaiting(void* database, int times);

  Waiting waiting_;
  std::unique_ptr<sqlite3, Close> connection_;  // may wait while it is closed
};

}  // namespace wenlolib::tools

#endif
