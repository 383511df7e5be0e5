/// Records in lines: for a person in columns, for a program as JSON.
#ifndef WENLOLIB_TOOLS_RECORDS_RECORDTABLE_H
#define WENLOLIB_TOOLS_RECORDS_RECORDTABLE_H

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "documents/DocumentText.h"
#include "records/RecordReading.h"

namespace wenlolib::tools {

/// "application", "printer log".
[[nodiscard]] std::string_view kindText(RecordKind kind);

/// "2026-11-22 16:25", in the reader's time zone.
[[nodiscard]] std::string minuteText(std::time_t date);

/// Lays out rows that are too many to be kept: all of them are measured first, and then given one
/// by one. A terminal that is too narrow for all columns gets two or three lines for each record.
class RecordTable {
 public:
  /// `folder` is the support folder, with "/" at the end.
  RecordTable(Style style, std::string folder) : style_(style), folder_(std::move(folder)) {}

  void measure(const RecordReading& reading, std::string_view place);

  /// Names the columns, and the folder that paths begin with.
  [[nodiscard]] std::string heading() const;

  [[nodiscard]] std::string row(const RecordReading& reading, std::string_view place) const;

  /// Explains what is not plain; "" if everything is.
  [[nodiscard]] std::string footing() const;

 private:
  static constexpr std::size_t cellCount = 6;
  using Cells = std::array<std::string, cellCount>;
  enum Column { date, kind, name, printer, size, verdict };

  [[nodiscard]] Cells cellsOf(const RecordReading& reading,
                              std::optional<std::size_t> printerWidth) const;
  [[nodiscard]] std::optional<std::size_t> widestCell() const;
  [[nodiscard]] std::size_t lineWidth() const;
  [[nodiscard]] bool oneLine() const;
  [[nodiscard]] bool twoLines() const;
  [[nodiscard]] std::array<std::size_t, cellCount> widths() const;
  [[nodiscard]] std::string line(const Cells& cells, Colour colour) const;
  [[nodiscard]] std::string block(const Cells& cells, Colour colour, std::string_view path) const;
  [[nodiscard]] std::string pathText(std::string_view place) const;

  Style style_;
  std::string folder_;
  std::array<std::size_t, cellCount> widths_ = {4, 4, 4, 7, 4, 7};  // at first those of the titles
  std::size_t pathWidth_ = 4;
  bool undated_ = false;
};

/// date, date_of, kind, name, device_id, sn, bytes, verdict, explanation, path; also contents if
/// they are wanted.
[[nodiscard]] std::string recordJson(const RecordReading& reading, const std::string& path,
                                     bool contents);

}  // namespace wenlolib::tools

#endif
