/// What all JSON that the command writes has in common: each object is on a line of its own, says
/// first which schema it follows and what it is, and names every member; a member without a value
/// is null.
#ifndef WENLOLIB_TOOLS_TERMINAL_JSON_H
#define WENLOLIB_TOOLS_TERMINAL_JSON_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::tools {

using Json = nlohmann::ordered_json;

/// The schema, tools/schema/wenlolib-1.json. It may gain members; its number changes if one goes or
/// changes its meaning.
inline constexpr int jsonSchema = 1;

/// An object of a type that the schema names.
[[nodiscard]] Json jsonObject(std::string_view type);

/// Puts a text into an object. A text that is not UTF-8 is null; its bytes follow as hexadecimal
/// digits under the same name with "_hex" added.
void put(Json& object, const std::string& name, std::string_view text);

/// The same; null without a text.
void put(Json& object, const std::string& name, const std::optional<std::string>& text);

/// The same; null for "".
void putIfAny(Json& object, const std::string& name, std::string_view text);

[[nodiscard]] std::string jsonLine(const Json& object);

}  // namespace wenlolib::tools

#endif
