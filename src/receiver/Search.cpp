#include "receiver/Search.h"

#include <algorithm>
#include <string>

#include "base/EnumTable.h"
#include "codec/Layouts.h"
#include "receiver/Contents.h"
#include "receiver/References.h"
#include "xml/WellFormed.h"

namespace wenlolib::receiver {
namespace {

bool holds(std::string_view bytes, std::string_view part) {
  return bytes.find(part) != std::string_view::npos;
}

/// The layout whose wrapper's start or end is there. Only one has an element for the payload that
/// no other has.
std::optional<Layout> layoutIn(std::string_view bytes) {
  for (const Layout layout : enumerators<Layout>) {
    if (holds(bytes, std::string(slotsOf(layout).front().opening) + " ")) return layout;
  }
  for (const Layout layout : enumerators<Layout>) {
    if (holds(bytes, "</" + std::string(wrapperName(layout)))) return layout;
  }
  return holds(bytes, "<PLI ") ? std::optional(Layout::printerOlderTag) : std::nullopt;
}

/// What stands between `opening` and the character that ends it. Nothing if either is missing.
std::optional<std::string_view> between(std::string_view bytes, std::string_view opening,
                                        char ending) {
  const std::size_t at = bytes.find(opening);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view rest = bytes.substr(at + opening.size());
  const std::size_t length = rest.find(ending);
  if (length == std::string_view::npos) return std::nullopt;
  return rest.substr(0, length);
}

/// A value that is not well-formed is given as it stands; so is the date, which gives the key.
std::string textOf(std::string_view value, const Slot& slot) {
  const bool asItStands = slot.field == wenlolib::Field::date || !holds(value, "&") ||
                          !xml::isWellFormed("<v>" + std::string(value) + "</v>");
  return asItStands ? std::string(value) : withoutReferences(value);
}

void findPayload(std::string_view bytes, Document& document) {
  const std::span<const Slot> slots = slotsOf(document.layout);
  const auto payload = std::ranges::find(slots, Part::payload, &Slot::part);
  const std::string opening = "<" + std::string(payload->name) + " C=\"";
  constexpr std::string_view closing = "\">";
  const std::size_t at = bytes.find(opening);
  document.marker = '\0';
  if (at == std::string_view::npos) return;
  const std::string_view rest = bytes.substr(at + opening.size());
  const bool marked = rest.starts_with('R') || rest.starts_with('X');
  if (!marked || !rest.substr(1).starts_with(closing)) return;
  const std::string_view digits = rest.substr(1 + closing.size());
  document.marker = rest.front();
  document.digits = digits.substr(0, leadingDigits(digits) / 2 * 2);
  document.digitsOffset = static_cast<std::size_t>(digits.data() - bytes.data());
}

}  // namespace

std::optional<Document> search(std::string_view bytes) {
  const std::optional<Layout> layout = layoutIn(bytes);
  if (!layout) return std::nullopt;
  Document document;
  document.layout = *layout;
  const std::span<const Slot> slots = slotsOf(*layout);
  document.checksum = between(bytes, slots[checksumSlot].opening, '"').value_or("");
  for (const Slot& slot : slots) {
    if (slot.part != Part::element) continue;
    const auto value = between(bytes, slot.opening, '<');
    if (!value) continue;
    const auto offset = static_cast<std::size_t>(value->data() - bytes.data());
    document.fields.push_back({std::string(slot.name), textOf(*value, slot), offset});
  }
  findPayload(bytes, document);
  if (document.fields.empty() && document.marker == '\0') return std::nullopt;
  return document;
}

}  // namespace wenlolib::receiver
