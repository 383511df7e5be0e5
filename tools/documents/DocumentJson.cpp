#include "documents/DocumentJson.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/Utf8.h"
#include "documents/DocumentText.h"
#include "documents/JsonText.h"
#include "documents/Readable.h"

namespace wenlolib::tools {
namespace {

struct FieldNames {
  std::string_view element;
  const char* key;
};

constexpr std::array<FieldNames, 11> keys = {{{"Version", "version"},
                                              {"OSVersion", "os_version"},
                                              {"Date", "date"},
                                              {"Locale", "locale"},
                                              {"ID", "id"},
                                              {"DeviceID", "device_id"},
                                              {"SN", "sn"},
                                              {"ROMVER", "romver"},
                                              {"Verdict", "verdict"},
                                              {"Layout", "layout"},
                                              {"Cipher", "cipher"}}};

std::string keyOf(const std::string& name) {
  for (const FieldNames& names : keys) {
    if (names.element == name) return names.key;
  }
  return name;
}

std::string line(const Json& object) {
  return object.dump() + "\n";
}

Json verdictObject(std::string_view path, std::size_t bytes, const receiver::Verdict& verdict) {
  Json object;
  put(object, "path", path);
  object["bytes"] = bytes;
  object["sound"] = verdict.sound();
  object["fault"] = code(verdict.fault);
  object["layer"] = code(verdict.layer);
  object["offset"] = verdict.sound() ? Json() : Json(verdict.offset);
  object["field"] = nullptr;
  object["explanation"] = nullptr;
  if (!verdict.field.empty()) put(object, "field", std::string_view(verdict.field));
  if (!verdict.sound()) put(object, "explanation", std::string_view(verdict.explanation));
  return object;
}

Json fieldsObject(const receiver::Document& document, const Redaction& redaction) {
  Json fields = Json::object();
  for (const receiver::Field& field : document.fields) {
    const std::string key = keyOf(field.name);
    if (redaction.hides(field.name)) {
      fields[key] = nullptr;
    } else {
      put(fields, key, std::string_view(redaction(field.value)));
    }
  }
  return fields;
}

Json linesArray(const Lines& lines, std::size_t begin, std::size_t end) {
  Json array = Json::array();
  for (std::size_t i = begin; i < end; ++i) {
    // A line that is not UTF-8 is an object of its own, with the same two names as elsewhere.
    if (isUtf8(lines[i])) {
      array.push_back(lines[i]);
    } else {
      Json object;
      put(object, "line", lines[i]);
      array.push_back(std::move(object));
    }
  }
  return array;
}

Json contentsObject(const Comparison& comparison) {
  Json contents;
  contents["same"] = comparison.sameContents;
  contents["changes"] = Json::array();
  for (const Change& change : comparison.changes) {
    Json object;
    object["a_line"] = change.aBegin + 1;
    object["b_line"] = change.bBegin + 1;
    object["removed"] = linesArray(comparison.aLines, change.aBegin, change.aEnd);
    object["added"] = linesArray(comparison.bLines, change.bBegin, change.bEnd);
    contents["changes"].push_back(std::move(object));
  }
  return contents;
}

}  // namespace

std::string verdictJson(std::string_view path, std::size_t bytes,
                        const receiver::Verdict& verdict) {
  return line(verdictObject(path, bytes, verdict));
}

std::string documentJson(std::string_view path, std::size_t bytes, const receiver::Report& report,
                         const std::optional<std::string>& contents, const Redaction& redaction) {
  Json object = verdictObject(redaction(path), bytes, redaction(report.verdict));
  object["redacted"] = redaction.on();
  object["trusted"] = isTrusted(report);
  for (const char* name : {"layout", "fields", "cipher", "contents", "contents_bytes"}) {
    object[name] = nullptr;
  }
  if (const receiver::Document* const document = redaction.shown(report)) {
    object["layout"] = code(document->layout);
    object["fields"] = fieldsObject(*document, redaction);
    if (const auto cipher = cipherName(document->marker)) {
      object["cipher"] = *cipher;
      object["contents_bytes"] = document->digits.size() / 2;
    }
  }
  if (contents) put(object, "contents", std::string_view(redaction(*contents)));
  return line(object);
}

std::string comparisonJson(std::string_view a, std::string_view b, const Comparison& comparison) {
  Json object;
  put(object, "a", a);
  put(object, "b", b);
  object["same"] = comparison.same();
  object["a_trusted"] = comparison.aTrusted;
  object["b_trusted"] = comparison.bTrusted;
  object["differences"] = Json::array();
  for (const Difference& difference : comparison.differences) {
    Json entry;
    entry["name"] = keyOf(difference.name);
    put(entry, "a", difference.a);
    put(entry, "b", difference.b);
    object["differences"].push_back(std::move(entry));
  }
  object["contents"] = contentsObject(comparison);
  return line(object);
}

}  // namespace wenlolib::tools
