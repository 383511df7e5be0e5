/// How to check what the command shows.
#ifndef WENLOLIB_FUZZ_SHOWN_H
#define WENLOLIB_FUZZ_SHOWN_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::fuzz {

using Json = nlohmann::json;

/// A name that is not text, and that would steer a terminal.
inline constexpr std::string_view path = "folder/\x1B[2J\xFF name\n.PLM";

[[nodiscard]] bool steersNothing(std::string_view text);

/// The text that the JSON gives under `name`, or its bytes if it is not text.
[[nodiscard]] std::optional<std::string> textIn(const Json& object, const std::string& name);

}  // namespace wenlolib::fuzz

#endif
