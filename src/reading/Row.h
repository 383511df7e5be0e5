/// Rows, schema 1: what a document says and how sound it is, in one flat row. All rows have all
/// columns, in this order, and each column has one type. Columns may be added; the schema's number
/// changes if one goes or changes its meaning.
#ifndef WENLOLIB_READING_ROW_H
#define WENLOLIB_READING_ROW_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "base/EnumTable.h"
#include "reading/DocumentFiles.h"
#include "reading/Redaction.h"
#include "wenlolib/Receiver.h"

namespace wenlolib {

inline constexpr int rowSchema = 1;

enum class Column : std::uint8_t {
  schema,
  source,  // the file, or the archive
  member,  // its name in the archive
  name,    // that the host gave
  number,  // of a printer log
  sha256,
  bytes,
  fault,
  layer,
  offset,
  field,
  trusted,
  layout,
  version,
  osVersion,
  dateText,       // as the document has it
  dateUtc,        // the same instant, if there is one
  offsetMinutes,  // from UTC
  locale,
  id,
  deviceId,
  sn,
  romver,
  cipher,
  contents,
  contentsHex,  // if they are not UTF-8, or hold U+0000
  contentsBytes,
};

enum class ColumnType : std::uint8_t { integer, truth, text };

struct ColumnTraits {
  std::string_view name;
  ColumnType type = ColumnType::text;
};

[[nodiscard]] const ColumnTraits& traits(Column column);

/// Nothing, an integer, a truth or a text in UTF-8 without U+0000.
using Cell = std::variant<std::monostate, std::int64_t, bool, std::string>;

using Row = EnumTable<Column, Cell>;

/// The row of a document that was read and examined. What must not be shown is null, or replaced.
[[nodiscard]] Row rowOf(const Candidate& candidate, std::string_view bytes,
                        const receiver::Report& report, const Redaction& redaction = {});

/// The row of a document or archive that could not be read: from its path, and its name in the
/// archive if it is in one.
[[nodiscard]] Row unreadableRow(const std::string& path, const std::optional<std::string>& member);

}  // namespace wenlolib

#endif
