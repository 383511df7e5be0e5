#include "xml/Mending.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/Integer.h"

namespace wenlolib::xml {
namespace {

bool isHexadecimalDigit(char character) {
  return digitValue(character) >= 0;
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

/// Whether `rest`, which follows an "&", is that of a reference. No meaningful reference is longer
/// than the bound, which keeps the search short in a text full of stray "&".
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

/// What encloses text that is not content.
struct Enclosure {
  std::string_view begin, end;
};
constexpr Enclosure enclosures[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};

/// The character that begins `text`, which is one of "&<]", escaped unless it has a meaning there.
std::string_view escapeStray(std::string_view text) {
  const std::string_view rest = text.substr(1);
  if (text.front() == '&') return beginsReference(rest) ? "&" : "&amp;";
  if (text.front() == '<') return beginsTag(rest) ? "<" : "&lt;";
  return "]";
}

}  // namespace

/// Adds the plain text that `piece` begins with and the markup after it. Returns their length.
std::size_t Mending::addContent(std::string_view piece) {
  constexpr std::string_view strayEnd = "]]>";
  const std::size_t plain = std::min(piece.find_first_of("&<]"), piece.size());
  text.append(piece.substr(0, plain));
  piece.remove_prefix(plain);
  if (piece.empty()) return plain;
  for (const Enclosure& each : enclosures) {
    if (!piece.starts_with(each.begin)) continue;
    text.append(each.begin);
    _end = each.end;
    return plain + each.begin.size();
  }
  const bool stray = piece.starts_with(strayEnd);
  text.append(stray ? "]]&gt;" : escapeStray(piece));
  return plain + (stray ? strayEnd.size() : 1);
}

/// Adds what is enclosed up to its end, or all of `piece`. Returns its length.
std::size_t Mending::addEnclosed(std::string_view piece) {
  const std::size_t end = piece.find(_end);
  const bool ends = end != std::string_view::npos;
  const std::size_t length = ends ? end + _end.size() : piece.size();
  text.append(piece.substr(0, length));
  if (ends) _end = {};
  return length;
}

void Mending::add(std::string_view piece) {
  while (!piece.empty()) {
    piece.remove_prefix(_end.empty() ? addContent(piece) : addEnclosed(piece));
  }
}

std::string mend(std::string_view text) {
  Mending repair;
  repair.add(text);
  return std::move(repair.text);
}

}  // namespace wenlolib::xml
