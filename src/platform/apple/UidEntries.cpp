#include "platform/apple/UidEntries.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "platform/apple/Strings.h"

namespace wenlolib::platform::apple {
namespace {

void skipBlanks(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

/// Takes the words that the text begins with, blanks before them left out.
bool take(std::string_view& text, std::initializer_list<std::string_view> words) {
  for (const std::string_view word : words) {
    skipBlanks(text);
    if (!text.starts_with(word)) return false;
    text.remove_prefix(word.size());
  }
  return true;
}

/// Takes the digits that the text begins with.
std::optional<std::int64_t> takeNumber(std::string_view& text) {
  std::uint64_t number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
  constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
  if (end.ec != std::errc() || number > largest) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end.ptr - text.data()));
  return static_cast<std::int64_t>(number);
}

}  // namespace

std::optional<Dictionary> uidEntryIn(std::string_view xml) {
  xml.remove_prefix(std::min(xml.find("<dict>"), xml.size()));
  if (!take(xml, {"<dict>", "<key>CF$UID</key>", "<integer>"})) return std::nullopt;
  const auto number = takeNumber(xml);
  if (!number || !take(xml, {"</integer>", "</dict>", "</plist>"})) return std::nullopt;
  skipBlanks(xml);
  return xml.empty() ? std::optional(Dictionary{{"CF$UID", *number}}) : std::nullopt;
}

std::optional<Dictionary> uidEntryOf(CFTypeRef object) {
  const Owned<CFDataRef> data(
      CFPropertyListCreateData(nullptr, object, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
  if (!data) return std::nullopt;
  const Bytes bytes = bytesOf(data.get());
  return uidEntryIn({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

}  // namespace wenlolib::platform::apple
