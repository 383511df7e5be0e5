#include "probes/PrinterIdentity.h"

#include "base/Integer.h"
#include "toolkit/Entries.h"

namespace wenlolib {
namespace {

bool readsAsTrue(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
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
