/// Texts of documents in JSON.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_JSONTEXT_H
#define WENLOLIB_TOOLS_DOCUMENTS_JSONTEXT_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::tools {

using Json = nlohmann::ordered_json;

/// Puts a text into an object. A text that is not UTF-8 is null; its bytes follow as hexadecimal
/// digits under the same name with "_hex" added.
void put(Json& object, const std::string& name, std::string_view text);

/// The same; null without a text.
void put(Json& object, const std::string& name, const std::optional<std::string>& text);

}  // namespace wenlolib::tools

#endif
