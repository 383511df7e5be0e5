#include "platform/apple/XmlNarrowing.h"

namespace wenlolib::platform::apple {
namespace {

constexpr std::string_view highFirst = "\xFE\xFF";
constexpr std::string_view lowFirst = "\xFF\xFE";
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

constexpr char outsideAscii = '\x80';

/// Everything behind the byte order mark.
std::optional<std::string> narrowedUnits(std::string_view file) {
  if (file.size() % 2 != 0) return std::nullopt;
  const std::size_t high = file.starts_with(highFirst) ? 0 : 1;
  std::string text;
  text.reserve(file.size() / 2);
  for (std::size_t at = 2; at < file.size(); at += 2) {
    text += file[at + high] == '\0' ? file[at + 1 - high] : outsideAscii;
  }
  return text;
}

std::string inLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& character : lower) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return lower;
}

/// Whether a name is `series` with one of the numbers up to `last` behind it.
bool isOneOf(std::string_view name, std::string_view series, int first, int last) {
  for (int number = first; number <= last; ++number) {
    if (name == std::string(series) + std::to_string(number)) return true;
  }
  return false;
}

/// Encodings of bytes in which every byte below 0x80 is that character, and no other byte is one.
bool keepsAscii(std::string_view name) {
  return name == "utf-8" || name == "us-ascii" || name == "ascii" || name == "macintosh" ||
         isOneOf(name, "iso-8859-", 1, 16) || isOneOf(name, "windows-", 1250, 1258);
}

}  // namespace

bool isInWideUnits(std::string_view file) {
  return file.starts_with(highFirst) || file.starts_with(lowFirst);
}

std::optional<std::string> narrowed(std::string_view file) {
  std::optional<std::string> text;
  if (isInWideUnits(file)) {
    text = narrowedUnits(file);
  } else {
    text = file.substr(file.starts_with(utf8Mark) ? utf8Mark.size() : 0);
  }
  if (text && text->find('\0') != std::string::npos) text.reset();
  return text;
}

bool namesKnownEncoding(std::string_view instruction, bool inWideUnits) {
  constexpr std::string_view attribute = "encoding";
  const std::size_t at = instruction.find(attribute);
  if (at == std::string_view::npos) return true;
  std::string_view rest = instruction.substr(at + attribute.size());
  if (rest.find(attribute) != std::string_view::npos) return false;
  if (!rest.starts_with("=\"") && !rest.starts_with("='")) return false;
  const char quote = rest[1];
  rest.remove_prefix(2);
  const std::size_t end = rest.find(quote);
  if (end == std::string_view::npos) return false;
  const std::string name = inLowerCase(rest.substr(0, end));
  return inWideUnits ? name == "utf-16" : keepsAscii(name);
}

}  // namespace wenlolib::platform::apple
