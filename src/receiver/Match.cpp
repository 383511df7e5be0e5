#include "receiver/Match.h"

#include <algorithm>

#include "base/EnumTable.h"
#include "receiver/Preface.h"

namespace wenlolib::receiver {
namespace {

std::size_t commonLength(std::string_view text, std::string_view literal) {
  const std::size_t most = std::min(text.size(), literal.size());
  const auto [end, unused] = std::mismatch(text.begin(), text.begin() + most, literal.begin());
  return static_cast<std::size_t>(end - text.begin());
}

/// Goes past a fixed text; false if it is not there, or only its beginning is.
bool pass(Match& match, std::string_view literal) {
  const std::string_view rest = match.bytes.substr(match.reached);
  if (rest.starts_with(literal)) {
    match.reached += literal.size();
    return true;
  }
  const std::size_t common = commonLength(rest, literal);
  match.reached += common;
  match.expected = literal;
  match.endIsMissing = common == rest.size();
  return false;
}

/// Goes past a value; false if the bytes end before it does.
bool passValue(Match& match, const Slot& slot) {
  const std::string_view rest = match.bytes.substr(match.reached);
  // If the quote is missing, one in a later tag must not be taken for it.
  const std::size_t length =
      slot.part == Part::attribute ? rest.find_first_of("\"<>") : rest.find('<');
  if (length == std::string_view::npos) {
    match.reached = match.bytes.size();
    match.expected = slot.closing;
    match.endIsMissing = true;
    return false;
  }
  match.values[match.slot] = rest.substr(0, length);
  match.reached += length;
  match.valueFound = true;
  return true;
}

bool pass(Match& match, const Slot& slot) {
  match.valueFound = false;
  if (!pass(match, slot.opening)) return false;
  return slot.part == Part::markup || (passValue(match, slot) && pass(match, slot.closing));
}

/// The layout whose wrapper is most like the beginning of the bytes.
Layout nearestLayout(std::string_view bytes) {
  const auto likeness = [&](Layout layout) {
    return commonLength(bytes, slotsOf(layout).front().opening);
  };
  return *std::ranges::max_element(enumerators<Layout>, {}, likeness);
}

}  // namespace

std::size_t Match::offsetOf(std::string_view value) const {
  return static_cast<std::size_t>(value.data() - bytes.data());
}

std::size_t Match::payloadSlot() const {
  return static_cast<std::size_t>(std::ranges::find(slotsOf(layout), Part::payload, &Slot::part) -
                                  slotsOf(layout).begin());
}

bool Match::payloadFound() const {
  return slot > payloadSlot() || (slot == payloadSlot() && valueFound);
}

std::string_view Match::content() const {
  const std::span<const Slot> slots = slotsOf(layout);
  const std::string_view& checksum = values[checksumSlot];
  const std::size_t begin =
      offsetOf(checksum) + checksum.size() + slots[checksumSlot].closing.size();
  return bytes.substr(begin, bytes.size() - slots.back().opening.size() - begin);
}

std::string_view Match::fieldAt(std::size_t offset) const {
  const std::span<const Slot> slots = slotsOf(layout);
  std::size_t end = wrapper;
  for (std::size_t i = 0; i < slot; ++i) {
    const Slot& passed = slots[i];
    end += passed.opening.size() + values[i].size() + passed.closing.size();
    if (offset < end) return passed.name;
  }
  return slot < slots.size() ? slots[slot].name : std::string_view();
}

Match matchOf(std::string_view bytes) {
  Match match;
  match.bytes = bytes;
  match.wrapper = match.reached = declarationLength(bytes);
  match.layout = nearestLayout(bytes.substr(match.wrapper));
  for (const Slot& slot : slotsOf(match.layout)) {
    if (!pass(match, slot)) return match;
    ++match.slot;
  }
  match.complete = match.reached == bytes.size();
  return match;
}

}  // namespace wenlolib::receiver
