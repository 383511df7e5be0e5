#include "record/HeaderValues.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "base/Integer.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "toolkit/SystemInformation.h"

namespace wenlolib {

// --- Versions ---

namespace {

std::string shortVersionIn(const std::optional<Dictionary>& information) {
  return twoComponents(textEntry(information, shortVersionKey).value_or(""));
}

}  // namespace

std::string twoComponents(std::string_view version) {
  const std::size_t first = version.find('.');
  if (first == std::string_view::npos || first + 1 == version.size()) return "";
  return std::string(version.substr(0, version.find('.', first + 1)));
}

std::string clientVersion() {
  platform::Bundles& bundles = *platform::current().bundles;
  std::optional<Dictionary> information = bundles.informationAt(std::string(hostBundlePath));
  if (!information) information = bundles.informationAt(std::string(installedBundlePath));
  return shortVersionIn(information);
}

std::string libraryVersion() {
  return shortVersionIn(platform::current().bundles->ownInformation());
}

std::string markedOSVersion() {
  const Text version = fullOSVersion();
  return version ? "M." + *version : "";
}

// --- The user's locale ---

namespace {

Text localeSource(std::uint32_t option) {
  switch (optionMode(option)) {
    case 0:
    case 2:
      return utf8OrNull(platform::current().user->locale());
    case 1:
      return textEntry(hostPreferences(), languageKey);
    default:
      return std::nullopt;
  }
}

/// The length of a text in characters as the platforms count them, in units of UTF-16.
std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x80 || byte >= 0xC0) count += byte >= 0xF0 ? 2 : 1;
  }
  return count;
}

}  // namespace

std::string normalisedLocale(std::string locale) {
  constexpr std::size_t longest = std::numeric_limits<std::int16_t>::max();
  if (characterCount(locale) > longest) return "";
  locale.erase(std::min(locale.find('@'), locale.size()));
  const std::size_t first = locale.find('_');
  if (first == std::string::npos) return locale;
  locale.erase(std::min(locale.find('_', first + 1), locale.size()));
  return locale;
}

std::string surveyLocale(std::uint32_t option) {
  return normalisedLocale(localeSource(option).value_or(""));
}

// --- The printer's identity ---

namespace {

/// White space beyond ASCII, as Foundation defines it.
constexpr std::string_view otherWhiteSpace[] = {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001",
                                                "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
                                                "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                                "\u2029", "\u202F", "\u205F", "\u3000"};

/// The length of the white space character that `text` begins with; 0 if it does not begin with
/// one.
std::size_t whiteSpaceLength(std::string_view text) {
  if (!text.empty() && isBlank(text.front())) return 1;
  const auto* found = std::ranges::find_if(
      otherWhiteSpace, [&](std::string_view each) { return text.starts_with(each); });
  return found == std::end(otherWhiteSpace) ? 0 : found->size();
}

bool readsAsTrue(std::string_view text) {
  while (const std::size_t length = whiteSpaceLength(text)) text.remove_prefix(length);
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  while (text.starts_with('0')) text.remove_prefix(1);
  return !text.empty() && std::string_view("YyTt123456789").find(text.front()) != text.npos;
}

}  // namespace

std::string identityText(const std::optional<Dictionary>& otherInfo, std::string_view key) {
  return textEntry(otherInfo, key).value_or("");
}

bool hasNewTagType(const std::optional<Dictionary>& otherInfo) {
  if (const Text text = textEntry(otherInfo, newTagTypeKey)) return readsAsTrue(*text);
  const Value* value = entry(otherInfo, newTagTypeKey);
  return value != nullptr && value->truth().value_or(false);
}

}  // namespace wenlolib
