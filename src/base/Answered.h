/// The library's edge: results, never exceptions.
#ifndef WENLOLIB_BASE_ANSWERED_H
#define WENLOLIB_BASE_ANSWERED_H

#include <utility>

namespace wenlolib {

/// Runs `work` and returns its result. Whatever it throws (in practice a failed allocation) ends
/// here, and `fallback` is the result: nothing may unwind into a host's frames.
template <class Answer, class Work>
[[nodiscard]] Answer answered(Answer fallback, Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return fallback;
  }
}

}  // namespace wenlolib

#endif
