#include "plist/PropertyList.h"

#include <algorithm>

#include "base/Integer.h"

namespace wenlolib::plist {
namespace {

using platform::ListReading;
using platform::ListState;

/// Judged by the first character, after a byte order mark. For UTF-16 and the like the first byte
/// is enough: the old form is ASCII.
bool beginsLikeXml(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  const auto first = std::find_if_not(bytes.begin(), bytes.end(), isBlank);
  if (first == bytes.end()) return true;
  const auto byte = static_cast<unsigned char>(*first);
  return byte == '<' || byte == 0 || byte >= 0x80;
}

ListReading stateAlone(ListState state) {
  ListReading reading;
  reading.state = state;
  return reading;
}

}  // namespace

ListReading read(std::string_view bytes) {
  if (bytes.empty()) return stateAlone(ListState::empty);
  if (bytes.size() > bounds.bytes) return stateAlone(ListState::tooLarge);
  if (bytes.starts_with("bplist")) return readBinary(bytes);
  return beginsLikeXml(bytes) ? readXml(bytes) : stateAlone(ListState::oldForm);
}

}  // namespace wenlolib::plist
