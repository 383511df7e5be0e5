#include "receiver/References.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace wenlolib::receiver {
namespace {

struct Named {
  std::string_view name;
  char character;
};
constexpr std::array<Named, 5> namedCharacters = {
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

void appendUtf8(std::string& text, std::uint32_t character) {
  const auto put = [&](std::uint32_t byte) { text.push_back(static_cast<char>(byte)); };
  const auto putLow = [&](unsigned shift) { put(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | (character >> 6));
  } else if (character < 0x10000) {
    put(0xE0 | (character >> 12));
    putLow(6);
  } else {
    put(0xF0 | (character >> 18));
    putLow(12);
    putLow(6);
  }
  putLow(0);
}

/// `name` stands between "&" and ";".
void appendReference(std::string& text, std::string_view name) {
  const auto* named = std::ranges::find(namedCharacters, name, &Named::name);
  if (named != namedCharacters.end()) {
    text.push_back(named->character);
    return;
  }
  const bool hexadecimal = name.starts_with("#x");
  const std::string_view number =
      name.substr(std::min<std::size_t>(name.size(), hexadecimal ? 2 : 1));
  std::uint32_t character = 0;
  const auto read = std::from_chars(number.data(), number.data() + number.size(), character,
                                    hexadecimal ? 16 : 10);
  if (read.ec == std::errc()) appendUtf8(text, character);
}

}  // namespace

std::string resolved(std::string_view value) {
  std::string text;
  for (;;) {
    const std::size_t plain = std::min(value.find('&'), value.size());
    text.append(value.substr(0, plain));
    value.remove_prefix(plain);
    const std::size_t end = value.find(';');
    if (end == std::string_view::npos) return text.append(value);
    if (!value.empty()) appendReference(text, value.substr(1, end - 1));
    value.remove_prefix(end + 1);
  }
}

}  // namespace wenlolib::receiver
