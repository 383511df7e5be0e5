/// The library's edge: answers, never exceptions.
#ifndef WENLOLIB_BASE_ANSWERED_H
#define WENLOLIB_BASE_ANSWERED_H

#include <utility>

namespace wenlolib {

/// Runs `work` and hands on its answer. Whatever is thrown inside (in practice a failed allocation)
/// ends here, and `fallback` is the answer: nothing may unwind into a host's frames.
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
