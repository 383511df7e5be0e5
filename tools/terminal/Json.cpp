#include "terminal/Json.h"

#include "base/Utf8.h"

namespace wenlolib::tools {

std::string hexadecimalText(std::string_view bytes) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(2 * bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

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

std::string jsonLine(const Json& object) {
  return object.dump() + "\n";
}

}  // namespace wenlolib::tools
