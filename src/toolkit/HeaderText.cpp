#include "toolkit/HeaderText.h"

#include <algorithm>
#include <string>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

/// Whether XML allows the character, every serialiser writes it as it is, and every parser reads it
/// like that.
bool isPlain(std::string_view character) noexcept {
  const char first = character.front();
  if (character.size() > 1) return character != "\xEF\xBF\xBE" && character != "\xEF\xBF\xBF";
  const auto byte = static_cast<unsigned char>(first);
  if (byte < 0x20) return first == '\t' || first == '\n';
  return byte < 0x80 && first != '<' && first != '>' && first != '&';
}

}  // namespace

std::size_t fillHeaderText(std::string_view text, std::span<char> buffer) noexcept {
  const std::size_t room = std::min(buffer.size(), longestHeaderText);
  std::size_t written = 0;
  while (!text.empty()) {
    const std::size_t length = std::max(utf8CharacterLength(text), std::size_t{1});
    const std::string_view character = text.substr(0, length);
    const std::string_view kept = isPlain(character) ? character : "_";
    if (kept.size() > room - written) break;
    std::ranges::copy(kept, buffer.begin() + static_cast<std::ptrdiff_t>(written));
    written += kept.size();
    text.remove_prefix(length);
  }
  return written;
}

Text CommonTooWenlolib::convertStrToHeaderStr(const Text& string) noexcept {
  if (!string) return std::nullopt;
  char buffer[longestHeaderText];
  const std::size_t length = fillHeaderText(*string, buffer);
  return answered(Text(), [&] { return Text(std::string(buffer, length)); });
}

}  // namespace wenlolib
