#include "receiver/References.h"

#include <algorithm>
#include <array>

#include "base/Integer.h"
#include "base/Utf8.h"

namespace wenlolib::receiver {
namespace {

struct Named {
  std::string_view name;
  char character;
};
constexpr std::array<Named, 5> namedCharacters = {
    {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};

/// `name` stands between "&" and ";".
void appendReference(std::string& text, std::string_view name) {
  const auto* named = std::ranges::find(namedCharacters, name, &Named::name);
  if (named != namedCharacters.end()) {
    text.push_back(named->character);
    return;
  }
  const bool isHexadecimal = name.starts_with("#x");
  name.remove_prefix(std::min<std::size_t>(name.size(), isHexadecimal ? 2 : 1));
  if (const auto character = takeNumber(name, isHexadecimal ? 16 : 10)) {
    appendUtf8(text, static_cast<char32_t>(*character));
  }
}

}  // namespace

std::string withoutReferences(std::string_view value) {
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
