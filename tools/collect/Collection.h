/// A fleet's documents in one database: a table of rows, the files that they came from, and views
/// that answer the common questions.
#ifndef WENLOLIB_TOOLS_COLLECT_COLLECTION_H
#define WENLOLIB_TOOLS_COLLECT_COLLECTION_H

#include <cstdint>
#include <optional>
#include <string>

#include "collect/Database.h"
#include "reading/Row.h"
#include "records/RecordReading.h"

namespace wenlolib::tools {

class Collection {
 public:
  /// Opens a database, or makes one. Throws DatabaseError, also for one of something else.
  /// `waiting` is called while another process writes to it.
  Collection(const std::string& path, bool make, Database::Waiting waiting);

  /// Whether a file in this state has been read to its end before.
  [[nodiscard]] bool hasRead(const std::string& path, const FileState& state);

  /// Adds a row, unless there is one of a document with the same bytes.
  void add(const Row& row);

  /// A file or archive has been read to its end, together with the rows that were added.
  void finish(const std::string& path, const FileState& state);

  /// Keeps what has been added. After a crash nothing else is there.
  void commit();

  [[nodiscard]] std::uint64_t documents() const;

  /// The tables that answer the common questions, for a person.
  [[nodiscard]] std::string answersText() const;

  /// How many rows were added that were not there before.
  [[nodiscard]] std::uint64_t added() const { return added_; }

 private:
  void prepare();
  void begin();

  Database database_;
  std::optional<Statement> find_;
  std::optional<Statement> insert_;
  std::optional<Statement> finish_;
  std::uint64_t added_ = 0;
  std::uint64_t pending_ = 0;  // changes that are not kept yet
  bool begun_ = false;
};

}  // namespace wenlolib::tools

#endif
