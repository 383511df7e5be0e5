#include <utility>
#include <vector>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib {
namespace {

/// `text` with `before` (not empty) replaced for as long as it is found. What a replacement brings
/// together is found again, on purpose, so a replacement is searched like the text that follows it.
std::string replacedThroughout(std::string_view text, std::string_view before,
                               std::string_view after) {
  std::string done;
  std::vector<std::string_view> unread{text};
  while (!unread.empty()) {
    if (unread.back().empty()) {
      unread.pop_back();
      continue;
    }
    done += unread.back().front();
    unread.back().remove_prefix(1);
    if (done.ends_with(before)) {
      done.resize(done.size() - before.size());
      unread.push_back(after);
    }
  }
  return done;
}

}  // namespace

Text CommonTooWenlolib::replaceString(Text string, const Text& before, const Text& after) noexcept {
  string = utf8OrNull(std::move(string));
  if (!string || string->empty()) return string;
  if (!before || before->empty() || !isUtf8(*before)) return string;
  const std::string_view replacement =
      after && isUtf8(*after) ? std::string_view(*after) : std::string_view();
  if (*before == replacement) return string;
  return answered(Text(), [&] { return Text(replacedThroughout(*string, *before, replacement)); });
}

}  // namespace wenlolib
