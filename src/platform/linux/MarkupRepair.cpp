#include "platform/linux/MarkupRepair.h"

#include <algorithm>
#include <cstddef>

#include "base/Integer.h"

namespace wenlolib::platform::gnulinux {
namespace {

bool isHexadecimalDigit(char character) {
  return isDigit(character) || (character >= 'a' && character <= 'f') ||
         (character >= 'A' && character <= 'F');
}

bool isLetter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// Any character that a name may hold, or a part of one beyond ASCII.
bool isNameCharacter(char character) {
  return isLetter(character) || isDigit(character) ||
         static_cast<unsigned char>(character) >= 0x80 ||
         std::string_view("_:-.").find(character) != std::string_view::npos;
}

/// Whether `rest`, which follows an "&", is a reference's. None that means anything is longer than
/// the bound, which keeps the search short in a text full of stray ones.
bool beginsReference(std::string_view rest) {
  constexpr std::size_t longest = 64;
  const std::size_t end = rest.substr(0, longest).find(';');
  if (end == std::string_view::npos) return false;
  const std::string_view name = rest.substr(0, end);
  for (const std::string_view known : {"amp", "lt", "gt", "quot", "apos"}) {
    if (name == known) return true;
  }
  if (name.starts_with("#x")) {
    return name.size() > 2 && std::ranges::all_of(name.substr(2), isHexadecimalDigit);
  }
  return name.size() > 1 && name.front() == '#' && std::ranges::all_of(name.substr(1), isDigit);
}

/// Whether `rest`, which follows a "<", is that of a tag, a comment or an instruction.
bool beginsTag(std::string_view rest) {
  if (rest.starts_with('!') || rest.starts_with('?')) return true;
  if (rest.starts_with('/')) rest.remove_prefix(1);
  return !rest.empty() && isNameCharacter(rest.front());
}

}  // namespace

std::string withStrayMarkupEscaped(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const std::size_t plain = std::min(text.find_first_of("&<"), text.size());
    escaped.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) break;
    const std::string_view rest = text.substr(1);
    if (text.front() == '&') {
      escaped.append(beginsReference(rest) ? "&" : "&amp;");
    } else {
      escaped.append(beginsTag(rest) ? "<" : "&lt;");
    }
    text = rest;
  }
  return escaped;
}

}  // namespace wenlolib::platform::gnulinux
