#include "receiver/Walk.h"

#include <algorithm>

#include "base/EnumTable.h"

namespace wenlolib::receiver {
namespace {

std::size_t commonLength(std::string_view text, std::string_view literal) {
  const std::size_t most = std::min(text.size(), literal.size());
  const auto [end, unused] = std::mismatch(text.begin(), text.begin() + most, literal.begin());
  return static_cast<std::size_t>(end - text.begin());
}

/// Goes past a fixed text; false where it does not stand there, or not to its end.
bool pass(Walk& walk, std::string_view literal) {
  const std::string_view rest = walk.bytes.substr(walk.reached);
  if (rest.starts_with(literal)) {
    walk.reached += literal.size();
    return true;
  }
  const std::size_t common = commonLength(rest, literal);
  walk.reached += common;
  walk.expected = literal;
  walk.endIsMissing = common == rest.size();
  return false;
}

/// Goes past a value; false where the bytes end before it does.
bool passValue(Walk& walk, const Slot& slot) {
  const std::string_view rest = walk.bytes.substr(walk.reached);
  // A quote that is missing must not be found far behind, in another tag.
  const std::size_t length =
      slot.part == Part::attribute ? rest.find_first_of("\"<>") : rest.find('<');
  if (length == std::string_view::npos) {
    walk.reached = walk.bytes.size();
    walk.expected = slot.closing;
    walk.endIsMissing = true;
    return false;
  }
  walk.values[walk.slot] = rest.substr(0, length);
  walk.reached += length;
  walk.valueFound = true;
  return true;
}

bool pass(Walk& walk, const Slot& slot) {
  walk.valueFound = false;
  if (!pass(walk, slot.opening)) return false;
  return slot.part == Part::markup || (passValue(walk, slot) && pass(walk, slot.closing));
}

/// The layout whose wrapper the bytes begin with, or at least begin like.
Layout nearestLayout(std::string_view bytes) {
  const auto likeness = [&](Layout layout) {
    return commonLength(bytes, slotsOf(layout).front().opening);
  };
  return *std::ranges::max_element(enumerators<Layout>, {}, likeness);
}

}  // namespace

std::size_t Walk::offsetOf(std::string_view value) const {
  return static_cast<std::size_t>(value.data() - bytes.data());
}

std::size_t Walk::payloadSlot() const {
  return static_cast<std::size_t>(std::ranges::find(slotsOf(layout), Part::payload, &Slot::part) -
                                  slotsOf(layout).begin());
}

bool Walk::payloadFound() const {
  return slot > payloadSlot() || (slot == payloadSlot() && valueFound);
}

std::string_view Walk::content() const {
  const std::span<const Slot> slots = slotsOf(layout);
  const std::string_view& checksum = values[checksumSlot];
  const std::size_t begin =
      offsetOf(checksum) + checksum.size() + slots[checksumSlot].closing.size();
  return bytes.substr(begin, bytes.size() - slots.back().opening.size() - begin);
}

std::string_view Walk::fieldAt(std::size_t offset) const {
  const std::span<const Slot> slots = slotsOf(layout);
  std::size_t end = 0;
  for (std::size_t i = 0; i < slot; ++i) {
    const Slot& passed = slots[i];
    end += passed.opening.size() + values[i].size() + passed.closing.size();
    if (offset < end) return passed.name;
  }
  return slot < slots.size() ? slots[slot].name : std::string_view();
}

Walk walkThrough(std::string_view bytes) {
  Walk walk;
  walk.bytes = bytes;
  walk.layout = nearestLayout(bytes);
  for (const Slot& slot : slotsOf(walk.layout)) {
    if (!pass(walk, slot)) return walk;
    ++walk.slot;
  }
  walk.complete = walk.reached == bytes.size();
  return walk;
}

}  // namespace wenlolib::receiver
