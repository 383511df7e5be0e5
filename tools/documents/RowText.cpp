#include "documents/RowText.h"

#include <string_view>
#include <type_traits>
#include <variant>

#include "terminal/Json.h"

namespace wenlolib::tools {
namespace {

Json jsonOf(const Cell& cell) {
  return std::visit(
      [](const auto& value) {
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, std::monostate>) {
          return Json();
        } else {
          return Json(value);
        }
      },
      cell);
}

std::string quotedText(std::string_view text) {
  std::string field = "\"";
  for (const char character : text) {
    if (character == '"') field += '"';
    field += character;
  }
  return field + '"';
}

std::string csvOf(const Cell& cell) {
  if (const auto* const number = std::get_if<std::int64_t>(&cell)) return std::to_string(*number);
  if (const auto* const truth = std::get_if<bool>(&cell)) return *truth ? "true" : "false";
  if (const auto* const text = std::get_if<std::string>(&cell)) return quotedText(*text);
  return "";
}

/// A record, from what `fieldOf` makes of each column.
template <class FieldOf>
std::string csvRecord(FieldOf fieldOf) {
  std::string record;
  for (const Column column : enumerators<Column>) {
    if (column != Column::schema) record += ',';
    record += fieldOf(column);
  }
  return record + "\r\n";
}

}  // namespace

std::string rowJson(const Row& row) {
  Json object;
  for (const Column column : enumerators<Column>) {
    object[std::string(traits(column).name)] = jsonOf(row[column]);
  }
  return jsonLine(object);
}

std::string csvHeading() {
  return csvRecord([](Column column) { return traits(column).name; });
}

std::string rowCsv(const Row& row) {
  return csvRecord([&](Column column) { return csvOf(row[column]); });
}

}  // namespace wenlolib::tools
