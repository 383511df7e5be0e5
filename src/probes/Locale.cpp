#include "probes/Locale.h"

#include <algorithm>
#include <limits>

#include "base/Utf8.h"
#include "platform/Platform.h"
#include "toolkit/Entries.h"
#include "toolkit/HostPreferences.h"
#include "toolkit/OptionMode.h"

namespace wenlolib {
namespace {

Text localeSource(std::uint32_t option) {
  switch (optionMode(option)) {
    case 0:
    case 2:
      return utf8OrNull(platform::current().user->locale());
    case 1:
      return textEntry(hostPreferences(), "LatestSelectedLanguage");
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

}  // namespace wenlolib
