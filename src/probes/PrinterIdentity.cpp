#include "probes/PrinterIdentity.h"

#include <algorithm>
#include <iterator>

#include "base/Integer.h"
#include "toolkit/Entries.h"

namespace wenlolib {
namespace {

/// White space beyond ASCII, as Foundation knows it.
constexpr std::string_view otherWhiteSpace[] = {"\u0085", "\u00A0", "\u1680", "\u2000", "\u2001",
                                                "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
                                                "\u2007", "\u2008", "\u2009", "\u200A", "\u2028",
                                                "\u2029", "\u202F", "\u205F", "\u3000"};

/// The length of the white space character that `text` begins with; 0 where it begins with none.
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
