#include "documents/DocumentJson.h"

#include <array>
#include <utility>

#include "base/Utf8.h"
#include "documents/DocumentText.h"
#include "reading/Codes.h"
#include "reading/Readable.h"

namespace wenlolib::tools {
namespace {

struct FieldNames {
  std::string_view element;
  const char* key;
};

constexpr std::array<FieldNames, 9> keys = {{{"Version", "version"},
                                             {"OSVersion", "os_version"},
                                             {"Date", "date"},
                                             {"Locale", "locale"},
                                             {"ID", "id"},
                                             {"DeviceID", "device_id"},
                                             {"SN", "sn"},
                                             {"ROMVER", "romver"},
                                             {"Cipher", "cipher"}}};

std::string keyOf(const std::string& name) {
  for (const FieldNames& names : keys) {
    if (names.element == name) return names.key;
  }
  return name;
}

}  // namespace

void putVerdict(Json& object, std::string_view path, std::uint64_t bytes,
                const receiver::Verdict& verdict) {
  put(object, "path", path);
  object["bytes"] = bytes;
  object["sound"] = verdict.sound();
  object["fault"] = code(verdict.fault);
  object["layer"] = code(verdict.layer);
  object["offset"] = verdict.sound() ? Json() : Json(verdict.offset);
  putIfAny(object, "field", verdict.field);
  putIfAny(object, "explanation", verdict.sound() ? "" : verdict.explanation);
}

namespace {

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

void addEntry(Json& differences, const std::string& name, const std::optional<std::string>& a,
              const std::optional<std::string>& b) {
  if (a == b) return;
  Json entry;
  entry["name"] = name;
  put(entry, "a", a);
  put(entry, "b", b);
  differences.push_back(std::move(entry));
}

template <class Value>
void addCodes(Json& differences, const std::string& name, Value a, Value b) {
  addEntry(differences, name, std::string(code(a)), std::string(code(b)));
}

/// A verdict and a layout are words for a person; a program gets their codes.
void addDifference(Json& differences, const Difference& difference, const Side& a, const Side& b) {
  if (difference.name == "Verdict") {
    addCodes(differences, "fault", a.report.verdict.fault, b.report.verdict.fault);
    addCodes(differences, "layer", a.report.verdict.layer, b.report.verdict.layer);
  } else if (difference.name == "Layout") {
    addCodes(differences, "layout", readable(a.report)->layout, readable(b.report)->layout);
  } else {
    addEntry(differences, keyOf(difference.name), difference.a, difference.b);
  }
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
  Json object = jsonObject("verdict");
  putVerdict(object, path, bytes, verdict);
  return jsonLine(object);
}

std::string unreadableJson(std::string_view path, std::string_view why) {
  Json object = jsonObject("verdict");
  putVerdict(object, path, 0, {});
  object["bytes"] = nullptr;
  object["sound"] = false;
  object["fault"] = "unreadable";
  put(object, "explanation", why);
  return jsonLine(object);
}

std::string documentJson(std::string_view path, std::size_t bytes, const receiver::Report& report,
                         const std::optional<std::string>& contents, const Redaction& redaction) {
  Json object = jsonObject("document");
  putVerdict(object, redaction(path), bytes, redaction(report.verdict));
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
  return jsonLine(object);
}

std::string comparisonJson(std::string_view a, std::string_view b, const Side& aSide,
                           const Side& bSide, const Comparison& comparison) {
  Json object = jsonObject("comparison");
  put(object, "a", a);
  put(object, "b", b);
  object["same"] = comparison.same();
  object["a_trusted"] = comparison.aTrusted;
  object["b_trusted"] = comparison.bTrusted;
  object["differences"] = Json::array();
  for (const Difference& difference : comparison.differences) {
    addDifference(object["differences"], difference, aSide, bSide);
  }
  object["contents"] = contentsObject(comparison);
  return jsonLine(object);
}

}  // namespace wenlolib::tools
