#include "terminal/Json.h"

#include <fmt/format.h>

#include "base/Integer.h"
#include "base/Utf8.h"

namespace wenlolib::tools {

Json jsonObject(std::string_view type) {
  Json object;
  object["schema"] = jsonSchema;
  object["type"] = type;
  return object;
}

void put(Json& object, const std::string& name, std::string_view text) {
  if (isUtf8(text)) {
    object[name] = text;
  } else {
    object[name] = nullptr;
    object[name + "_hex"] = hexadecimalText(text);
  }
}

void put(Json& object, const std::string& name, const std::optional<std::string>& text) {
  if (text) {
    put(object, name, std::string_view(*text));
  } else {
    object[name] = nullptr;
  }
}

void putIfAny(Json& object, const std::string& name, std::string_view text) {
  put(object, name, text.empty() ? std::nullopt : std::optional<std::string>(text));
}

namespace {

/// What JSON allows as it is but a terminal obeys, U+007F to U+009F, written as \u007f. There is
/// none in most texts, which two quick searches tell.
std::string withoutControls(std::string json) {
  if (json.find('\x7F') == std::string::npos && json.find('\xC2') == std::string::npos) return json;
  std::string text;
  text.reserve(json.size());
  for (std::size_t i = 0; i < json.size(); ++i) {
    const bool isTwoBytes = json[i] == '\xC2';  // for U+0080 to U+00BF; the second is the number
    const auto code = static_cast<unsigned char>(isTwoBytes ? json[i + 1] : json[i]);
    if (json[i] == '\x7F' || (isTwoBytes && code < 0xA0)) {
      text += fmt::format("\\u{:04x}", code);
      if (isTwoBytes) ++i;
    } else {
      text += json[i];
    }
  }
  return text;
}

}  // namespace

std::string jsonLine(const Json& object) {
  return withoutControls(object.dump()) + "\n";
}

}  // namespace wenlolib::tools
