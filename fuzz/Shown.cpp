#include "Shown.h"

#include <algorithm>

namespace wenlolib::fuzz {

bool steersNothing(std::string_view text) {
  return std::ranges::all_of(text, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte == '\n' || byte == '\t' || (byte >= ' ' && byte != 0x7F);
  });
}

std::optional<std::string> textIn(const Json& object, const std::string& name) {
  if (object.contains(name) && object[name].is_string()) return object[name];
  if (!object.contains(name + "_hex")) return std::nullopt;
  const std::string digits = object[name + "_hex"];
  std::string bytes;
  for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
  }
  return bytes;
}

}  // namespace wenlolib::fuzz
