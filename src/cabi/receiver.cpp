#include <unistd.h>

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "base/Answered.h"
#include "platform/posix/ProgramStart.h"
#include "reading/Archive.h"
#include "reading/Codes.h"
#include "reading/DocumentJobs.h"
#include "reading/Readable.h"
#include "reading/Row.h"
#include "wenlolib/Receiver.h"
#include "wenlolib/receiver_c.h"
#include "wenlolib/version.h"

using wenlolib::Cell;
using wenlolib::Column;
using wenlolib::ColumnType;

namespace {

/// Runs `work`; returns WENLOLIB_OK, or why it failed.
template <class Work>
int made(Work&& work) noexcept {
  try {
    std::forward<Work>(work)();
    return WENLOLIB_OK;
  } catch (const std::system_error&) {
    return WENLOLIB_NO_THREAD;
  } catch (...) {
    return WENLOLIB_NO_MEMORY;
  }
}

void putSize(std::size_t* size, std::size_t value) {
  if (size != nullptr) *size = value;
}

}  // namespace

// --- One document ---

/// What a report says, without views into the examined bytes.
struct wenlolib_report {
  bool trusted = false;
  wenlolib::receiver::Verdict verdict;
  std::optional<wenlolib::receiver::Layout> layout;
  std::vector<wenlolib::receiver::Field> fields;
  std::string checksum;
  char marker = '\0';
  std::optional<std::string> contents;

  explicit wenlolib_report(wenlolib::receiver::Report report)
      : trusted(wenlolib::isTrusted(report)), verdict(std::move(report.verdict)) {
    std::optional<wenlolib::receiver::Document>& document =
        report.document ? report.document : report.found;
    if (!document) return;
    layout = document->layout;
    checksum = document->checksum;
    marker = document->marker;
    if (marker != '\0') contents = wenlolib::receiver::contentsOf(std::move(*document));
    fields = std::move(document->fields);
  }
};

int wenlolib_examine(const void* bytes, size_t size, wenlolib_report** report) {
  if (report == nullptr) return WENLOLIB_WRONG_ARGUMENT;
  *report = nullptr;
  if (bytes == nullptr && size > 0) return WENLOLIB_WRONG_ARGUMENT;
  return made([&] {
    const std::string_view document(static_cast<const char*>(bytes), size);
    *report = new wenlolib_report(wenlolib::receiver::examine(document));
  });
}

void wenlolib_report_free(wenlolib_report* report) {
  delete report;
}

const char* wenlolib_report_fault(const wenlolib_report* report) {
  return report == nullptr ? "" : wenlolib::code(report->verdict.fault).data();
}

const char* wenlolib_report_layer(const wenlolib_report* report) {
  return report == nullptr ? "" : wenlolib::code(report->verdict.layer).data();
}

size_t wenlolib_report_offset(const wenlolib_report* report) {
  return report == nullptr ? 0 : report->verdict.offset;
}

const char* wenlolib_report_field(const wenlolib_report* report) {
  return report == nullptr ? "" : report->verdict.field.c_str();
}

const char* wenlolib_report_explanation(const wenlolib_report* report) {
  return report == nullptr ? "" : report->verdict.explanation.c_str();
}

int wenlolib_report_trusted(const wenlolib_report* report) {
  return report != nullptr && report->trusted ? 1 : 0;
}

const char* wenlolib_report_layout(const wenlolib_report* report) {
  if (report == nullptr || !report->layout) return nullptr;
  return wenlolib::code(*report->layout).data();
}

const char* wenlolib_report_value(const wenlolib_report* report, const char* name, size_t* size) {
  putSize(size, 0);
  if (report == nullptr || name == nullptr) return nullptr;
  const auto field = std::ranges::find(report->fields, name, &wenlolib::receiver::Field::name);
  if (field == report->fields.end()) return nullptr;
  putSize(size, field->value.size());
  return field->value.c_str();
}

const char* wenlolib_report_checksum(const wenlolib_report* report) {
  return report == nullptr ? "" : report->checksum.c_str();
}

const char* wenlolib_report_cipher(const wenlolib_report* report) {
  if (report == nullptr) return nullptr;
  const auto name = wenlolib::cipherName(report->marker);
  return name ? name->data() : nullptr;
}

const char* wenlolib_report_contents(const wenlolib_report* report, size_t* size) {
  putSize(size, 0);
  if (report == nullptr || !report->contents) return nullptr;
  putSize(size, report->contents->size());
  return report->contents->c_str();
}

// --- Many documents ---

namespace {

/// What became of a document on its way to a row.
struct Reading {
  wenlolib::Row row;
  std::string complaint;
  bool skipped = false;  // there is no row
};

std::size_t heldBy(const Reading& reading) {
  std::size_t bytes = reading.complaint.size();
  for (const Column column : wenlolib::enumerators<Column>) {
    if (const auto* const text = std::get_if<std::string>(&reading.row[column])) {
      bytes += text->size();
    }
  }
  return bytes;
}

Reading unreadable(const wenlolib::Candidate& candidate, std::string complaint) {
  if (candidate.nothing) return {{}, "", true};
  return {wenlolib::unreadableRow(candidate.path, candidate.member), std::move(complaint), false};
}

Reading read(const wenlolib::Candidate& candidate, std::string& buffer, bool redact) {
  if (!candidate.complaint.empty()) return unreadable(candidate, candidate.complaint);
  try {
    const auto [bytes, complaint, vanished] = wenlolib::readDocument(candidate, buffer, nullptr);
    if (vanished) return {{}, "", true};
    if (!complaint.empty()) return unreadable(candidate, complaint);
    const wenlolib::receiver::Report report = wenlolib::receiver::examine(bytes);
    const wenlolib::Redaction redaction =
        redact ? wenlolib::Redaction(report) : wenlolib::Redaction();
    return {wenlolib::rowOf(candidate, bytes, report, redaction), "", false};
  } catch (const std::bad_alloc&) {
    std::string().swap(buffer);
    return unreadable(candidate, "too large for the available memory");
  }
}

wenlolib_cell cellOf(const Cell& cell) {
  if (const auto* const number = std::get_if<std::int64_t>(&cell)) {
    return {WENLOLIB_INTEGER, *number, nullptr, 0};
  }
  if (const auto* const truth = std::get_if<bool>(&cell)) {
    return {WENLOLIB_TRUTH, *truth ? 1 : 0, nullptr, 0};
  }
  if (const auto* const text = std::get_if<std::string>(&cell)) {
    return {WENLOLIB_TEXT, 0, text->c_str(), text->size()};
  }
  return {WENLOLIB_NULL, 0, nullptr, 0};
}

constexpr wenlolib::EnumTable<ColumnType, int> types({
    {ColumnType::integer, WENLOLIB_INTEGER},
    {ColumnType::truth, WENLOLIB_TRUTH},
    {ColumnType::text, WENLOLIB_TEXT},
});

constexpr std::size_t columnCount = wenlolib::enumerators<Column>.size();

}  // namespace

size_t wenlolib_column_count(void) {
  return columnCount;
}

const char* wenlolib_column_name(size_t column) {
  if (column >= columnCount) return nullptr;
  return wenlolib::traits(static_cast<Column>(column)).name.data();
}

int wenlolib_column_type(size_t column) {
  if (column >= columnCount) return WENLOLIB_NULL;
  return types[wenlolib::traits(static_cast<Column>(column)).type];
}

struct wenlolib_rows {
  wenlolib::ArchiveWalk walk;
  wenlolib::DocumentJobs<Reading> jobs;
  std::optional<Reading> current{};
  std::array<wenlolib_cell, columnCount> cells{};
  bool failed = false;
  pid_t process = getpid();

  wenlolib_rows(std::vector<std::string> paths, int count, bool redact)
      : walk(std::move(paths), true, nullptr, nullptr),
        jobs(
            count, [this] { return walk.next(); },
            [redact](const wenlolib::Candidate& candidate, std::string& buffer) {
              return read(candidate, buffer, redact);
            }) {}

  /// False at the end.
  bool advance() {
    do {
      current = jobs.next();
    } while (current && current->skipped);
    if (!current) return false;
    for (const Column column : wenlolib::enumerators<Column>) {
      cells[static_cast<std::size_t>(column)] = cellOf(current->row[column]);
    }
    return true;
  }
};

int wenlolib_rows_open(const char* const* paths, size_t count, int jobs, int redact,
                       wenlolib_rows** rows) {
  if (rows == nullptr) return WENLOLIB_WRONG_ARGUMENT;
  *rows = nullptr;
  if ((paths == nullptr && count > 0) || jobs < 1 || jobs > wenlolib::mostJobs) {
    return WENLOLIB_WRONG_ARGUMENT;
  }
  const std::span all(paths, count);
  if (std::ranges::find(all, nullptr) != all.end()) return WENLOLIB_WRONG_ARGUMENT;
  return made([&] {
    std::vector<std::string> copied(all.begin(), all.end());
    // To the walk, "-" is standard input, which is the program's own.
    std::ranges::replace(copied, "-", "./-");
    const wenlolib::platform::posix::SignalHold hold;
    *rows = new wenlolib_rows(std::move(copied), jobs, redact != 0);
  });
}

int wenlolib_rows_next(wenlolib_rows* rows, const wenlolib_cell** cells) {
  if (cells == nullptr) return WENLOLIB_WRONG_ARGUMENT;
  *cells = nullptr;
  if (rows == nullptr || rows->process != getpid()) return WENLOLIB_WRONG_ARGUMENT;
  if (rows->failed) return WENLOLIB_NO_MEMORY;
  bool any = false;
  const int answer = made([&] { any = rows->advance(); });
  rows->failed = answer != WENLOLIB_OK;
  if (any) *cells = rows->cells.data();
  return rows->failed ? WENLOLIB_NO_MEMORY : WENLOLIB_OK;
}

const char* wenlolib_rows_complaint(const wenlolib_rows* rows) {
  return rows == nullptr || !rows->current ? "" : rows->current->complaint.c_str();
}

void wenlolib_rows_free(wenlolib_rows* rows) {
  // In a process that was forked off the threads do not exist: nobody could wait for them.
  if (rows != nullptr && rows->process == getpid()) delete rows;
}

const char* wenlolib_receiver_version(void) {
  return WENLOLIB_VERSION;
}
