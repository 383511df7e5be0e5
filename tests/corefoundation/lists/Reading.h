/// One property list as this project and Core Foundation read it, in a form that can be compared.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_READING_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_READING_H

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <string>

#include "platform/PropertyLists.h"
#include "platform/apple/Objects.h"
#include "wenlolib/Value.h"

namespace wenlolib::tests::lists {

struct Reading {
  platform::ListState state = platform::ListState::damaged;
  /// The dictionary as `shown` spells it; empty if there is none.
  std::string value;
  /// Core Foundation read the text form in braces, which it tries last.
  bool isOldForm = false;
  /// The list exceeds this project's bounds; then `value` is empty.
  bool isBeyondBounds = false;

  [[nodiscard]] bool isDictionary() const {
    return state == platform::ListState::whole || state == platform::ListState::partial;
  }
  [[nodiscard]] bool isRefused() const {
    return !isDictionary() && state != platform::ListState::otherRoot;
  }
  /// For people: "partial {...}", "other root" or "refused".
  [[nodiscard]] std::string shown() const;

  /// Both refuse the list, or make the same of it.
  friend bool operator==(const Reading& left, const Reading& right) {
    if (left.isRefused() || right.isRefused()) return left.isRefused() && right.isRefused();
    return left.state == right.state && left.value == right.value;
  }
};

[[nodiscard]] Reading ours(const std::string& bytes);
[[nodiscard]] Reading theirs(const std::string& bytes);

/// Two values are shown alike only if they are the same. A NaN is the same as any other.
[[nodiscard]] std::string shown(const Value& value);

[[nodiscard]] platform::apple::Owned<CFPropertyListRef> objectFrom(const Value& value);

/// What Core Foundation writes; empty if it refuses.
[[nodiscard]] std::string written(CFPropertyListRef list, CFPropertyListFormat format);

}  // namespace wenlolib::tests::lists

#endif
