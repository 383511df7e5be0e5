#include "reading/Row.h"

#include <mbedtls/sha256.h>

#include <array>
#include <charconv>
#include <optional>
#include <system_error>
#include <utility>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "reading/Codes.h"
#include "reading/DateText.h"
#include "reading/Readable.h"

namespace wenlolib {
namespace {

constexpr EnumTable<Column, ColumnTraits> columns({
    {Column::schema, {"schema", ColumnType::integer}},
    {Column::source, {"source"}},
    {Column::member, {"member"}},
    {Column::name, {"name"}},
    {Column::number, {"number", ColumnType::integer}},
    {Column::sha256, {"sha256"}},
    {Column::bytes, {"bytes", ColumnType::integer}},
    {Column::fault, {"fault"}},
    {Column::layer, {"layer"}},
    {Column::offset, {"offset", ColumnType::integer}},
    {Column::field, {"field"}},
    {Column::trusted, {"trusted", ColumnType::truth}},
    {Column::layout, {"layout"}},
    {Column::version, {"version"}},
    {Column::osVersion, {"os_version"}},
    {Column::dateText, {"date_text"}},
    {Column::dateUtc, {"date_utc"}},
    {Column::offsetMinutes, {"offset_minutes", ColumnType::integer}},
    {Column::locale, {"locale"}},
    {Column::id, {"id"}},
    {Column::deviceId, {"device_id"}},
    {Column::sn, {"sn"}},
    {Column::romver, {"romver"}},
    {Column::cipher, {"cipher"}},
    {Column::contents, {"contents"}},
    {Column::contentsHex, {"contents_hex"}},
    {Column::contentsBytes, {"contents_bytes", ColumnType::integer}},
});

constexpr std::array<std::pair<std::string_view, Column>, 8> fieldColumns = {{
    {"Version", Column::version},
    {"OSVersion", Column::osVersion},
    {"Date", Column::dateText},
    {"Locale", Column::locale},
    {"ID", Column::id},
    {"DeviceID", Column::deviceId},
    {"SN", Column::sn},
    {"ROMVER", Column::romver},
}};

// --- Texts ---

bool isShowable(std::string_view text) {
  return isUtf8(text) && text.find('\0') == std::string_view::npos;
}

/// The text with U+FFFD in place of U+0000 and of every byte that is not UTF-8.
std::string showable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t length = text.front() == '\0' ? 0 : utf8CharacterLength(text);
    if (length == 0) {
      shown += "\uFFFD";
    } else {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return shown;
}

std::string cellText(std::string_view text) {
  return isShowable(text) ? std::string(text) : showable(text);
}

template <std::size_t size>
std::string digitsOf(const std::array<std::uint8_t, size>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

std::string sha256Of(std::string_view bytes) {
  std::array<std::uint8_t, 32> digest{};
  const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
  if (mbedtls_sha256_ret(data, bytes.size(), digest.data(), 0) != 0) {
    throw std::system_error(std::make_error_code(std::errc::io_error), "SHA-256");
  }
  return digitsOf(digest);
}

// --- Parts of a row ---

/// What the file's name says: "QX200_7.PLM" is the seventh log of QX200.
void putName(Row& row, const std::string& path, const std::optional<std::string>& member,
             const Redaction& redaction) {
  const std::string& place = member ? *member : path;
  const std::string_view file = std::string_view(place).substr(place.rfind('/') + 1);
  row[Column::source] = cellText(redaction(path));
  if (member) row[Column::member] = cellText(redaction(*member));
  if (!hasDocumentName(file)) return;
  const std::string name = hostName(file);
  row[Column::name] = cellText(redaction(name));
  std::int64_t number = 0;
  const std::string_view digits = file.substr(file.rfind('_') + 1);
  const char* const end = digits.data() + digits.size() - std::string_view(".PLM").size();
  const auto result = std::from_chars(digits.data(), end, number);
  const bool numbered = file.ends_with(".PLM") && name.size() < file.size() - digits.size() &&
                        result.ec == std::errc() && result.ptr == end;
  if (numbered) row[Column::number] = number;
}

void putVerdict(Row& row, const receiver::Verdict& verdict) {
  row[Column::fault] = std::string(code(verdict.fault));
  row[Column::layer] = std::string(code(verdict.layer));
  if (verdict.sound()) return;
  row[Column::offset] = static_cast<std::int64_t>(verdict.offset);
  if (!verdict.field.empty()) row[Column::field] = verdict.field;
}

void putDate(Row& row, std::string_view date) {
  const std::optional<Moment> moment = zonedMomentOf(date);
  const std::optional<std::string> utc = moment ? utcText(moment->time) : std::nullopt;
  if (!utc) return;
  row[Column::dateUtc] = *utc;
  row[Column::offsetMinutes] = std::int64_t{moment->offset / 60};
}

/// False if a value had to be changed to be shown.
bool putFields(Row& row, const receiver::Document& document, const Redaction& redaction) {
  bool whole = true;
  for (const receiver::Field& field : document.fields) {
    if (field.name == "Date") putDate(row, field.value);
    for (const auto& [name, column] : fieldColumns) {
      if (name != field.name || redaction.hides(name)) continue;
      whole = whole && isShowable(field.value);
      row[column] = cellText(redaction(field.value));
    }
  }
  return whole;
}

void putContents(Row& row, const receiver::Document& document, const Redaction& redaction) {
  const auto cipher = cipherName(document.marker);
  if (!cipher) return;
  row[Column::cipher] = std::string(*cipher);
  row[Column::contentsBytes] = static_cast<std::int64_t>(document.digits.size() / 2);
  const std::optional<std::string> contents = receiver::contentsOf(document);
  if (!contents) return;
  // A value that is not UTF-8 can be a part of a character, which redaction then breaks.
  std::string text = redaction(*contents);
  if (isShowable(text)) {
    row[Column::contents] = std::move(text);
  } else {
    row[Column::contentsHex] = hexadecimalText(text);
  }
}

}  // namespace

const ColumnTraits& traits(Column column) {
  return columns[column];
}

Row rowOf(const Candidate& candidate, std::string_view bytes, const receiver::Report& report,
          const Redaction& redaction) {
  Row row;
  row[Column::schema] = std::int64_t{rowSchema};
  putName(row, candidate.path, candidate.member, redaction);
  row[Column::sha256] = sha256Of(bytes);
  row[Column::bytes] = static_cast<std::int64_t>(bytes.size());
  putVerdict(row, report.verdict);
  bool trusted = isTrusted(report);
  if (const receiver::Document* const document = redaction.shown(report)) {
    row[Column::layout] = std::string(code(document->layout));
    trusted = putFields(row, *document, redaction) && trusted;
    putContents(row, *document, redaction);
  }
  row[Column::trusted] = trusted;
  return row;
}

Row unreadableRow(const std::string& path, const std::optional<std::string>& member) {
  Row row;
  row[Column::schema] = std::int64_t{rowSchema};
  putName(row, path, member, {});
  row[Column::fault] = std::string("unreadable");
  row[Column::layer] = std::string("none");
  row[Column::trusted] = false;
  return row;
}

}  // namespace wenlolib
